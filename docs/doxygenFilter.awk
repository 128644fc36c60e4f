# Makes Doxygen read our headers: turns the plain // comments that belong to something into its own.
#
# - The block at the top of a file, "NAME.h - what it is", is the file's.
# - A block right above a declaration is that declaration's, and that of the further functions right
#   below it. A block above an empty line is a heading among declarations.
# - A comment behind a member is that member's, with the lines that continue it.
# - Nothing in the text is markup but `names`. Lines indented by three or more (worked values, lists)
#   stay as they stand.
# Comments within functions are left alone. A function that the library only declares and nothing
# explains is an error.

# The text without its meaning to Doxygen.
function plain(text,    part, n, i, result) {
    gsub(/\\/, "&&", text)
    gsub(/[@#%"&<>]/, "\\\\&", text)
    gsub(/::/, "\\::", text)
    n = split(text, part, "`")
    if (n % 2 == 0) return text
    for (i = 1; i <= n; ++i) result = result (i % 2 ? part[i] : "<tt>" part[i] "</tt>")
    return result
}

# Prints the block as documentation, with `first` in front.
function printBlock(first,    i, verbatim, stays) {
    print indent "/**" first
    for (i = 1; i <= size; ++i) {
        stays = block[i] ~ /^   / || (verbatim && block[i] == "" && block[i + 1] ~ /^   /)
        if (stays && !verbatim) print indent " * \\verbatim"
        if (!stays && verbatim) print indent "\\endverbatim"
        verbatim = stays
        print verbatim ? block[i] : indent " *" plain(block[i])
    }
    if (verbatim) print indent "\\endverbatim"
    print indent " */"
}

function printAsItIs(    i) {
    for (i = 1; i <= size; ++i) print indent "//" block[i]
}

# Where a comment begins in a line of code, 0 for nowhere.
function commentIn(line,    i, c, quote) {
    for (i = 1; i < length(line); ++i) {
        c = substr(line, i, 1)
        if (quote) {
            if (c == "\\") ++i
            else if (c == quote) quote = ""
        } else if (c == "\"" || (c == "'" && substr(line, i - 1, 1) !~ /[0-9]/)) {
            quote = c
        } else if (substr(line, i, 2) == "//") {
            return i
        }
    }
    return 0
}

# Follows the braces of a line of code: scope[depth] says what each encloses.
function follow(code,    i, c) {
    gsub(/"([^"\\]|\\.)*"|'([^'\\]|\\.)'/, "", code)
    for (i = 1; i <= length(code); ++i) {
        c = substr(code, i, 1)
        if (c == "{") {
            scope[++depth] = statement ~ declaring && statement !~ /\(/ ? "declarations" : "body"
            statement = ""
        } else if (c == "}") {
            --depth
            statement = ""
        } else if (c == ";") {
            statement = ""
        } else {
            statement = statement c
        }
    }
    sub(/^ +/, "", statement)
    sub(/^(public|private|protected): */, "", statement)
}

function declares() {
    return depth == 0 || scope[depth] == "declarations"
}

BEGIN {
    declaring = "^ *(template *<[^>]*> *)?(namespace|struct|class|enum|extern)"
}

FNR == 1 {
    name = $0
    sub(/^\/\/ /, "", name)
    sub(/ - .*/, "", name)
    sub(/[^-]* - /, "// ")
    indent = ""
    inHeading = 1
    isLibrary = FILENAME ~ /(^|\/)(util\/[^\/]*|fct)\/[^\/]*$/
}

/^ *\/\// && statement == "" && declares() {
    at = index($0, "//")
    if (continued && at == continued) {
        print substr($0, 1, at - 1) "///<" plain(substr($0, at + 2))
        next
    }
    if (!pending) size = 0
    pending = 1
    indent = substr($0, 1, at - 1)
    block[++size] = substr($0, at + 2)
    block[size + 1] = ""
    next
}

{
    continued = 0
    if (inHeading && pending) {
        printBlock(" \\file " name)
        size = pending = inHeading = 0
    }
    if ($0 ~ /^ *$/ || $0 ~ /^#/) {
        if (pending) printAsItIs()
        size = pending = 0
        print
        next
    }
    at = commentIn($0)
    code = at ? substr($0, 1, at - 1) : $0
    begins = statement == "" && declares()
    if (pending || (begins && size && code ~ /^[^~}]*\(/ && code !~ /(delete|override);/)) printBlock("")
    if (begins && !size && isLibrary && code !~ /{ *$/ && match(code, /[A-Za-z0-9_]+\(/))
        print "/// \\noContractFor_" substr(code, RSTART, RLENGTH - 1) # which Doxygen can't know
    pending = 0

    if (at && declares() && code !~ /}/) {
        print code "///<" plain(substr($0, at + 2))
        continued = at
    } else {
        print
    }
    follow(code)
}
