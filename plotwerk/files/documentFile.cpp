#include "plotwerk/files/documentFile.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/files/documentFields.h"
#include "plotwerk/files/documentTree.h"
#include "plotwerk/formula/formula.h"
#include "plotwerk/model/limits.h"
#include "util/text/utf8.h"

#include <cmath>
#include <set>

namespace plotwerk {

static const std::string formatName = "plotwerk document";
static constexpr unsigned version = 1;

namespace {

class Writer {
  public:
    explicit Writer(bool binaryKind) : binary(binaryKind) {}

    template<class T> void operator()(const char *key, T &member) { tree[key] = written(member); }

    template<class T> Tree written(T &record) {
        Writer inner(binary);
        fields(inner, record);
        return std::move(inner.tree);
    }

  private:
    Tree written(bool value) { return value; }
    Tree written(int value) { return value; }
    Tree written(double value) {
        if (binary || !std::isinf(value)) return value; // a NaN is printed as null
        return value > 0 ? plusInfinity : minusInfinity;
    }
    Tree written(std::string &text) { return plw::utf8Of(text); }

    Tree written(std::vector<double> &values) {
        if (binary) {
            Tree::binary_t::container_type bytes;
            bytes.reserve(values.size() * sizeof(double));
            for (const double value : values) appendDouble(bytes, value);
            return Tree::binary(std::move(bytes), doublesTag);
        }
        Tree::array_t numbers;
        numbers.reserve(values.size());
        for (const double value : values) numbers.push_back(written(value));
        return numbers;
    }

    template<class T> Tree writtenArray(T &records) {
        Tree array = Tree::array();
        for (auto &record : records) array.push_back(written(record));
        return array;
    }
    template<class T> Tree written(std::vector<T> &records) { return writtenArray(records); }
    template<class T, size_t n> Tree written(std::array<T, n> &records) {
        return writtenArray(records);
    }

    bool binary;
    Tree tree = Tree::object();
};

// Takes the tree apart: numbers are freed as soon as they are read.
class Reader {
  public:
    explicit Reader(Tree &object) : tree(object) {}

    template<class T> void operator()(const char *key, T &member) {
        const auto found = tree.find(key);
        if (found == tree.end()) throw Refusal(std::string("damaged: no \"") + key + '"');
        read(key, *found, member);
    }

  private:
    static void require(bool good, const char *key) {
        if (!good) throw Refusal(std::string("damaged: \"") + key + "\" is of the wrong kind");
    }

    static void read(const char *key, Tree &node, bool &value) {
        require(node.is_boolean(), key);
        value = node.get<bool>();
    }
    static void read(const char *key, Tree &node, int &value) {
        require(node.is_number_integer(), key);
        const bool big = node.is_number_unsigned() && node.get<uint64_t>() > INT32_MAX;
        require(!big && node.get<int64_t>() >= INT32_MIN, key);
        value = node.get<int>();
    }
    static void read(const char *key, Tree &node, double &value) {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        if (node.is_number()) {
            value = node.get<double>();
        } else if (node.is_null()) {
            value = std::numeric_limits<double>::quiet_NaN();
        } else if (node == plusInfinity) {
            value = infinity;
        } else {
            require(node == minusInfinity, key);
            value = -infinity;
        }
    }
    static void read(const char *key, Tree &node, std::string &text) {
        require(node.is_string() && plw::isUtf8(node.get_ref<const std::string &>()), key);
        text = std::move(node.get_ref<std::string &>());
    }
    static void read(const char *key, Tree &node, std::vector<double> &values) {
        require(node.is_binary() && node.get_binary().has_subtype() &&
                    node.get_binary().subtype() == doublesTag && node.get_binary().size() % 8 == 0,
                key);
        const auto &bytes = node.get_binary();
        values.resize(bytes.size() / 8);
        for (size_t i = 0; i < values.size(); ++i) values[i] = doubleAt(&bytes[i * 8]);
        node = nullptr;
    }
    template<class T> static void read(const char *key, Tree &node, std::vector<T> &records) {
        require(node.is_array(), key);
        records.clear();
        for (Tree &item : node) read(key, item, records.emplace_back());
    }
    template<class T, size_t n>
    static void read(const char *key, Tree &node, std::array<T, n> &records) {
        require(node.is_array() && node.size() == n, key);
        for (size_t i = 0; i < n; ++i) read(key, node[i], records[i]);
    }
    template<class T> static void read(const char *key, Tree &node, T &record) {
        require(node.is_object(), key);
        Reader inner(node);
        fields(inner, record);
    }

    Tree &tree;
};

} // namespace

// The parameters are those of the formula, in its order.
static void checkFormula(const Document &document) {
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
}

bool beginsAsDocument(std::string_view bytes) {
    if (bytes.starts_with(cborMark)) return true;
    if (bytes.starts_with("\xef\xbb\xbf")) bytes.remove_prefix(3);
    const size_t first = bytes.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && bytes[first] == '{';
}

Document documentOf(std::string bytes) {
    const bool binary = bytes.starts_with(cborMark);
    Tree tree = binary ? treeOfCbor(bytes) : treeOfJson(bytes);
    bytes = std::string(); // the tree holds it all now

    if (!tree.is_object() || tree.value("format", Tree()) != formatName) {
        throw Refusal("not a document of Plotwerk");
    }
    const Tree saved = tree.value("version", Tree());
    if (!saved.is_number_unsigned() || saved == 0) throw Refusal("damaged: no version");
    if (saved.get<uint64_t>() > version) {
        throw Refusal("saved by a later Plotwerk (version " + saved.dump() + " of the format)");
    }

    Document document;
    Reader{tree}("document", document);
    try {
        checkWhole(document);
    } catch (const Refusal &refusal) {
        throw Refusal(std::string("damaged: ") + refusal.what());
    }
    return document;
}

void writeDocument(std::ostream &stream, const Document &document, bool binary) {
    Tree tree = {{"format", formatName}, {"version", version}};
    // The list of fields serves reading as well and asks for a document that may be changed; the
    // writer doesn't.
    tree["document"] = Writer(binary).written(const_cast<Document &>(document));
    if (binary) {
        stream << cborMark;
        Tree::to_cbor(tree, stream);
    } else {
        stream << tree << '\n';
    }
}

} // namespace plotwerk
