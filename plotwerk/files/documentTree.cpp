#include "plotwerk/files/documentTree.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"

#include <limits>
#include <utility>
#include <vector>

namespace plotwerk {

// A document's own nesting is ten; what lies deeper could only exhaust the stack.
static constexpr std::size_t deepest = 16;

// About what a node of the tree takes, and in JSON, where bytes are gathered one by one, a number.
static constexpr double nodeBytes = 170;
static constexpr double numberBytes = 16;

// From below, so that nothing in it holds anything that does.
static void empty(Tree &tree) {
    if (!tree.is_structured()) return;
    for (Tree &node : tree) empty(node);
    tree.clear();
}

WholeTree::~WholeTree() {
    empty(root);
}

namespace {

// Builds the tree of a JSON text; the numbers under valuesKey are gathered as bytes.
class TreeBuilder final : public nlohmann::json_sax<Tree> {
  public:
    explicit TreeBuilder(Tree &tree) : root(tree) {}

    std::string reason; // why building stopped

    bool null() override {
        if (!inValues) return add(nullptr);
        return addNumber(std::numeric_limits<double>::quiet_NaN());
    }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override {
        return inValues ? addNumber(static_cast<double>(value)) : add(value);
    }
    bool number_unsigned(number_unsigned_t value) override {
        return inValues ? addNumber(static_cast<double>(value)) : add(value);
    }
    bool number_float(number_float_t value, const string_t &) override {
        return inValues ? addNumber(value) : add(value);
    }
    bool string(string_t &value) override {
        if (!inValues) return add(std::move(value));
        constexpr double infinity = std::numeric_limits<double>::infinity();
        if (value == plusInfinity) return addNumber(infinity);
        if (value == minusInfinity) return addNumber(-infinity);
        return stop("a text among the numbers of a column");
    }
    bool binary(binary_t &) override { return stop("bytes in a text"); }

    bool start_object(std::size_t) override { return open(Tree::object()); }
    bool key(string_t &name) override {
        member = std::move(name);
        return true;
    }
    bool end_object() override { return closeInnermost(); }

    bool start_array(std::size_t) override {
        if (inValues || open_.empty() || !open_.back()->is_object() || member != valuesKey) {
            return open(Tree::array());
        }
        inValues = true;
        return true;
    }
    bool end_array() override {
        if (!inValues) return closeInnermost();
        inValues = false;
        // Tree::binary would leave half a node where it finds no memory
        return add(binary_t(std::move(values), doublesTag));
    }

    bool parse_error(std::size_t position, const std::string &,
                     const nlohmann::detail::exception &) override {
        return stop("damaged at byte " + std::to_string(position));
    }

  private:
    bool stop(std::string why) {
        reason = std::move(why);
        return false;
    }

    // The node's place in the tree, null where only numbers may stand.
    Tree *place(Tree node) {
        if (inValues) return nullptr;
        requireMemory(memory += nodeBytes);
        if (open_.empty()) return &(root = std::move(node));
        Tree &parent = *open_.back();
        if (parent.is_object()) return &(parent[member] = std::move(node));
        parent.push_back(std::move(node));
        return &parent.back();
    }

    bool add(Tree node) {
        return place(std::move(node)) || stop("something else among the numbers of a column");
    }

    bool addNumber(double value) {
        requireMemory(memory += numberBytes);
        appendDouble(values, value);
        return true;
    }

    bool open(Tree node) {
        if (open_.size() == deepest) return stop("nested too deep");
        Tree *placed = place(std::move(node));
        if (!placed) return stop("something else among the numbers of a column");
        open_.push_back(placed);
        return true;
    }

    bool closeInnermost() {
        open_.pop_back();
        return true;
    }

    Tree &root;
    std::vector<Tree *> open_; // objects and arrays not yet ended, outermost first
    std::string member;        // the key that was read last
    binary_t::container_type values;
    double memory = 0; // about what has been taken
    bool inValues = false;
};

} // namespace

WholeTree treeOfJson(const std::string &text) {
    WholeTree tree;
    TreeBuilder builder(tree.root);
    if (!Tree::sax_parse(text, &builder)) throw Refusal(builder.reason);
    return tree;
}

namespace {

// The head of a CBOR item: what kind it is, and its length, count or value.
struct Head {
    unsigned kind;
    std::uint64_t argument;
};

} // namespace

// Takes a head off the bytes. False when they end within it, and for an indefinite length.
static bool takeHead(std::string_view &bytes, Head &head) {
    if (bytes.empty()) return false;
    const unsigned first = static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(1);
    head = {first >> 5, first & 31};
    if (head.argument < 24) return true;
    if (head.argument > 27) return false;

    const std::size_t length = std::size_t{1} << (head.argument - 24);
    if (bytes.size() < length) return false;
    head.argument = 0;
    for (const char byte : bytes.substr(0, length)) {
        head.argument = head.argument << 8 | static_cast<unsigned char>(byte);
    }
    bytes.remove_prefix(length);
    return true;
}

// The parser of CBOR takes what a head promises on trust and recurses over tags and chunks; so the
// heads are walked first. True for one whole item, made of what a document is written with.
static bool isPlainCbor(std::string_view bytes) {
    enum Kind { byteString = 2, text, array, map, tag };
    Head head{};
    std::vector<std::uint64_t> missing{1}; // items still to come at each level
    double memory = 0;                     // about what the tree of those so far takes
    while (!missing.empty()) {
        if (missing.back() == 0) {
            missing.pop_back();
            continue;
        }
        --missing.back();
        requireMemory(memory += nodeBytes);

        if (!takeHead(bytes, head)) return false;
        if (head.kind == tag) {
            if (head.argument != doublesTag || !takeHead(bytes, head)) return false;
            if (head.kind != byteString) return false;
        }
        if (head.kind == byteString || head.kind == text) {
            if (head.argument > bytes.size()) return false;
            memory += static_cast<double>(head.argument);
            bytes.remove_prefix(head.argument);
        } else if (head.kind == array || head.kind == map) {
            if (head.argument > bytes.size() || missing.size() > deepest) return false;
            missing.push_back(head.kind == map ? head.argument * 2 : head.argument);
        }
    }
    return bytes.empty();
}

WholeTree treeOfCbor(std::string_view bytes) {
    const std::string_view body = bytes.substr(cborMark.size());
    if (!isPlainCbor(body)) throw Refusal("damaged");
    // as Tree::from_cbor, which copies the tree that it returns
    WholeTree tree;
    nlohmann::detail::json_sax_dom_parser<Tree> builder(tree.root, false);
    constexpr auto cbor = nlohmann::detail::input_format_t::cbor;
    const auto input = [&] { return nlohmann::detail::input_adapter(body.begin(), body.end()); };
    nlohmann::detail::binary_reader<Tree, decltype(input())> reader(input(), cbor);
    if (!reader.sax_parse(cbor, &builder, true, Tree::cbor_tag_handler_t::store))
        throw Refusal("damaged");
    return tree;
}

} // namespace plotwerk
