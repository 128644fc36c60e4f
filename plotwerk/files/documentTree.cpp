#include "plotwerk/files/documentTree.h"

#include "plotwerk/refusal.h"

#include <limits>
#include <vector>

namespace plotwerk {

// A document's own nesting is ten; what lies deeper could only exhaust the stack.
static constexpr size_t deepest = 16;
// A record has at most some twenty fields, and looking for one passes all others.
static constexpr size_t mostKeys = 64;

namespace {

// Builds the tree of a JSON text; the numbers under valuesKey are gathered as bytes.
class TreeBuilder final : public nlohmann::json_sax<Tree> {
  public:
    Tree root;
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

    bool start_object(size_t) override { return open(Tree::object()); }
    bool key(string_t &name) override {
        if (open_.back()->size() >= mostKeys) return stop("too many fields in one record");
        member = std::move(name);
        return true;
    }
    bool end_object() override { return closeInnermost(); }

    bool start_array(size_t) override {
        if (inValues || open_.empty() || !open_.back()->is_object() || member != valuesKey) {
            return open(Tree::array());
        }
        inValues = true;
        return true;
    }
    bool end_array() override {
        if (!inValues) return closeInnermost();
        inValues = false;
        return add(Tree::binary(std::move(values), doublesTag));
    }

    bool parse_error(size_t position, const std::string &,
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

    std::vector<Tree *> open_; // objects and arrays not yet ended, outermost first
    std::string member;        // the key that was read last
    binary_t::container_type values;
    bool inValues = false;
};

} // namespace

Tree treeOfJson(std::string text) {
    TreeBuilder builder;
    if (!Tree::sax_parse(text, &builder)) throw Refusal(builder.reason);
    return std::move(builder.root);
}

// The bytes' parser takes what a head promises on trust and recurses over tags and chunks; so the
// heads are walked first. True for one whole item, made of what a document is written with.
static bool isPlainCbor(std::string_view bytes) {
    const auto head = [&]() -> unsigned {
        const auto byte = static_cast<unsigned char>(bytes.front());
        bytes.remove_prefix(1);
        return byte;
    };

    std::vector<uint64_t> missing{1}; // items still to come at each level
    while (!missing.empty()) {
        if (missing.back() == 0) {
            missing.pop_back();
            continue;
        }
        --missing.back();
        if (bytes.starts_with("\xd8\x56")) { // doublesTag
            bytes.remove_prefix(2);
            if (bytes.empty() || (static_cast<unsigned char>(bytes.front()) >> 5) != 2)
                return false;
        }
        if (bytes.empty()) return false;

        const unsigned first = head();
        const unsigned kind = first >> 5;
        uint64_t argument = first & 31;
        if (argument >= 28) return false;
        if (argument >= 24) {
            const size_t length = size_t{1} << (argument - 24);
            if (bytes.size() < length) return false;
            argument = 0;
            for (size_t i = 0; i < length; ++i) argument = argument << 8 | head();
        }

        if (kind == 2 || kind == 3) { // bytes, text
            if (argument > bytes.size()) return false;
            bytes.remove_prefix(argument);
        } else if (kind == 4 || kind == 5) { // array, map
            const uint64_t items = kind == 5 ? argument * 2 : argument;
            if (argument > (kind == 5 ? mostKeys : bytes.size())) return false;
            if (missing.size() > deepest) return false;
            missing.push_back(items);
        } else if (kind == 6) {
            return false;
        }
    }
    return bytes.empty();
}

Tree treeOfCbor(std::string bytes) {
    const std::string_view body = std::string_view(bytes).substr(cborMark.size());
    if (!isPlainCbor(body)) throw Refusal("damaged");
    Tree tree =
        Tree::from_cbor(body.begin(), body.end(), true, false, Tree::cbor_tag_handler_t::store);
    if (tree.is_discarded()) throw Refusal("damaged");
    return tree;
}

} // namespace plotwerk
