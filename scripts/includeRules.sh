#!/usr/bin/env bash
# Checks every #include of the tree against the table "Who may include whom" of
# docs/architecture.md, which tells how it is read. Prints FILE:LINE for each that breaks it.
set -euo pipefail
cd "$(dirname "$0")/.."
page=docs/architecture.md

find plw.h util fct client plotwerk tests bench \( -name '*.h' -o -name '*.cpp' \) | sort |
    xargs awk -v page="$page" '
# Whether a name is, or lies in, what a word of the table stands for.
function within(name, word) {
    return word == "*" || name == word || index(name, word "/") == 1 ||
        (word ~ /^</ && index(name, word) == 1)
}

# The words between backquotes of a text, each behind a newline.
function words(text,    part, list, i, n) {
    n = split(text, part, "`")
    for (i = 2; i <= n; i += 2) list = list "\n" part[i]
    return list
}

function complain(text) {
    print text
    broken = 1
}

function folderOf(name) {
    sub(/\/[^\/]*$/, "", name)
    return name
}

function allowed(file, header,    row, i, n, right) {
    if (folderOf(header) == folderOf(file)) return 1
    for (row = 0; row < rows; ++row) {
        if (!within(file, left[row])) continue
        n = split(may[row], right, "\n")
        for (i = 2; i <= n; ++i) if (within(header, right[i])) return 1
    }
    return 0
}

BEGIN {
    rows = 0
    while ((getline line < page) > 0) {
        if (line ~ /^#/) inRules = line ~ /^## Who may include whom$/
        if (!inRules || line !~ /^\| *`/) continue
        split(line, cell, "|")
        n = split(words(cell[2]), ruledFiles, "\n")
        for (i = 2; i <= n; ++i) {
            left[rows] = ruledFiles[i]
            may[rows++] = words(cell[3])
        }
        n = split(words(cell[3]), allowedHere, "\n")
        for (i = 2; i <= n; ++i) if (allowedHere[i] ~ /^</) libraries[allowedHere[i]]
    }
    if (!rows) complain(page ": no table of include rules")
}

FNR == 1 {
    ruled = 0
    for (row = 0; row < rows; ++row) if (within(FILENAME, left[row])) ruled = used[row] = 1
    if (!ruled) complain(FILENAME ":1: no rule of " page " is about this file")
}

/^ *# *include *"/ {
    split($0, part, "\"")
    header = part[2]
    if (header !~ /\//) next # of the same folder, or generated for it
    if (!allowed(FILENAME, header)) complain(FILENAME ":" FNR ": may not include \"" header "\"")
}

/^ *# *include *</ {
    header = $0
    sub(/^[^<]*/, "", header)
    for (library in libraries) {
        if (within(header, library) && !allowed(FILENAME, header)) {
            complain(FILENAME ":" FNR ": may not include " header)
            break
        }
    }
}

END {
    for (row = 0; row < rows; ++row)
        if (!used[row]) complain(page ": no file is called, or lies in, " left[row])
    exit broken
}'
