#include "plotwerk/files/documentFile.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/files/documentArchive.h"
#include "plotwerk/formula/formula.h"
#include "plotwerk/model/fitResult.h"
#include "plotwerk/model/limits.h"
#include "plotwerk/model/names.h"
#include "plotwerk/model/structure.h"

#include <cstdint>
#include <set>

namespace plotwerk {

static const std::string formatName = "plotwerk document";

// The parameters are those of the formula, in its order, unless names of columns may be among them.
static void checkFormula(const Document &document) {
    if (document.frame.multiDimFit || document.formula.find('\'') != std::string::npos) return;
    std::vector<std::string> names;
    for (const FitParameter &parameter : document.parameters) names.push_back(parameter.name);
    const bool none = document.formula.empty() && names.empty();
    if (!none && Formula(document.formula).parameterNames() != names)
        throw Refusal("the parameters are not those of the formula");
}

// What every document in memory keeps to, beyond the kinds of its fields.
static void checkWhole(const Document &document) {
    requireWithinLimits(document);
    std::set<int> ranks;
    int fitCurves = 0;
    int drawnCurves = 0;
    for (const Source &source : document.sources) {
        for (const Table &table : source.tables) {
            for (const Column &column : table.y) {
                if (column.values.size() != table.x.values.size())
                    throw Refusal("columns of unequal length in \"" + source.name + '"');
                if (column.rank > 0 && !ranks.insert(column.rank).second)
                    throw Refusal("the selection has two curves in one place");
                fitCurves += column.fitData;
                drawnCurves += column.drawnByFit;
            }
        }
    }
    if (fitCurves > 1) throw Refusal("more than one curve is the fit data");
    if (drawnCurves > 1) throw Refusal("more than one curve is drawn by the fit");
    checkFormula(document);
    const std::vector<double> &covariance = document.fit.covariance.values;
    const std::size_t varied = variedParameters(document.fit).size();
    if (!covariance.empty() && covariance.size() != varied * (varied + 1) / 2)
        throw Refusal("the covariance is not that of the fit's parameters");
}

bool beginsAsDocument(std::string_view bytes) {
    if (bytes.starts_with(cborMark)) return true;
    if (bytes.starts_with("\xef\xbb\xbf")) bytes.remove_prefix(3);
    const std::size_t first = bytes.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && bytes[first] == '{';
}

// Null where there is no such field.
static const Tree &fieldOf(const Tree &tree, const char *key) {
    static const Tree none;
    const auto found = tree.find(key);
    return found == tree.end() ? none : *found;
}

// What the file says of its version.
static Version versionOf(const Tree &tree) {
    const Tree &major = fieldOf(tree, "version");
    const Tree zero = 0U; // version 1 has no minor one
    const Tree &minor = tree.contains("minor") ? fieldOf(tree, "minor") : zero;
    if (!major.is_number_unsigned() || major == 0 || !minor.is_number_unsigned())
        throw Refusal("damaged: no version");
    return {major.get<std::uint64_t>(), minor.get<std::uint64_t>()};
}

static std::string textOf(const Version &version) {
    return "version " + std::to_string(version.major) + '.' + std::to_string(version.minor) +
           " of the format";
}

// Before version 2.2 a code could be any, and those of the symbols began again.
static void boundSymbols(Document &document) {
    for (Source &source : document.sources)
        for (Table &table : source.tables)
            for (Column &column : table.y)
                for (int &symbol : column.look.symbol) symbol %= symbolCount;
}

Document documentOf(std::string bytes) {
    const bool binary = bytes.starts_with(cborMark);
    WholeTree whole = binary ? treeOfCbor(bytes) : treeOfJson(bytes);
    Tree &tree = whole.root;
    std::string().swap(bytes); // the tree holds it all now

    if (!tree.is_object() || fieldOf(tree, "format") != formatName) {
        throw Refusal("not a document of Plotwerk");
    }
    const Version version = versionOf(tree);
    if (version.major > currentVersion.major)
        throw Refusal("saved by a later Plotwerk (" + textOf(version) + ")");

    Document document;
    Reader(tree, version)("document", document);
    if (Version{2, 2} > version) boundSymbols(document);
    visitNames(document, [](std::string &name) { name = nameOf(std::move(name)); });
    document.formula = formulaOf(std::move(document.formula));
    document.fit.formula = formulaOf(std::move(document.fit.formula));
    try {
        checkWhole(document);
    } catch (const Refusal &refusal) {
        throw Refusal(std::string("damaged: ") + refusal.what());
    }
    if (version > currentVersion)
        log(LogLevel::warning, '"' + document.name + "\" was saved by a later Plotwerk (" +
                                   textOf(version) + "): what is new there is left out");
    return document;
}

namespace {

// A file as a record. What is written isn't changed, but the lists of fields serve reading, too.
struct Whole {
    std::string format;
    Version version;
    Document &document;
};

template<class Archive> void fields(Archive &archive, Whole &whole) {
    archive("format", whole.format);
    archive("version", whole.version.major);
    archive("minor", whole.version.minor);
    archive("document", whole.document);
}

} // namespace

void writeDocument(std::ostream &stream, const Document &document, bool binary) {
    if (!binary) requireTime(90 * bytesOf(document) / sizeof(double));
    Whole whole{formatName, currentVersion, const_cast<Document &>(document)};
    if (binary) stream << cborMark;
    TreeWriter tree(stream, binary);
    Writer(tree).write(whole);
    if (!binary) tree.endLine();
}

} // namespace plotwerk
