// documentArchive.h - what goes through the fields of a record in documentFields.h: out of it into
// a file, or out of a file's tree into it.
#ifndef PLOTWERK_FILES_DOCUMENTARCHIVE_H
#define PLOTWERK_FILES_DOCUMENTARCHIVE_H

#include "plotwerk/base/refusal.h"
#include "plotwerk/files/documentFields.h"
#include "plotwerk/files/documentTree.h"
#include "plotwerk/files/treeWriter.h"
#include "util/text/utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace plotwerk {

// Writes a record's fields with their keys in alphabetical order.
class Writer {
  public:
    explicit Writer(TreeWriter &to) : tree(to) {}

    template<class T> void write(T &record) {
        Keys keys;
        fields(keys, record);
        std::ranges::sort(keys.all);
        tree.beginRecord(keys.all.size());
        for (const std::string_view key : keys.all) {
            Field field{*this, key};
            fields(field, record);
        }
        tree.endRecord();
    }

  private:
    struct Keys {
        std::vector<std::string_view> all;
        template<class T> void operator()(const char *key, T &, Version = {}) {
            all.push_back(key);
        }
    };

    // Of all fields the one with that key.
    struct Field {
        Writer &writer;
        std::string_view wanted;
        template<class T> void operator()(const char *key, T &member, Version = {}) {
            if (key != wanted) return;
            writer.tree.key(key);
            writer.write(member);
        }
    };

    void write(bool &value) { tree.write(value); }
    void write(int &value) { tree.write(value); }
    void write(std::uint64_t &value) { tree.write(value); }
    void write(double &value) { tree.write(value); }
    void write(std::string &text) { tree.write(text); }
    void write(std::vector<double> &values) { tree.write(values); }
    template<class T> void writeArray(T &records) {
        tree.beginArray(records.size());
        for (auto &record : records) write(record);
        tree.endArray();
    }
    template<class T> void write(std::vector<T> &records) { writeArray(records); }
    template<class T, std::size_t n> void write(std::array<T, n> &records) { writeArray(records); }

    TreeWriter &tree;
};

// Takes a tree of a file of that version apart: numbers are freed as soon as they are read.
class Reader {
  public:
    Reader(Tree &object, const Version &written) : tree(object), version(written) {}

    template<class T> void operator()(const char *key, T &member, Version since = {}) {
        if (since > version) return;
        const auto found = tree.find(key);
        if (found == tree.end()) throw Refusal(std::string("damaged: no \"") + key + '"');
        read(key, *found, member);
    }

  private:
    static void require(bool good, const char *key) {
        if (!good) throw Refusal(std::string("damaged: \"") + key + "\" is of the wrong kind");
    }

    void read(const char *key, Tree &node, bool &value) {
        require(node.is_boolean(), key);
        value = node.get<bool>();
    }
    void read(const char *key, Tree &node, int &value) {
        require(node.is_number_integer(), key);
        const bool big = node.is_number_unsigned() && node.get<std::uint64_t>() > INT32_MAX;
        require(!big && node.get<std::int64_t>() >= INT32_MIN, key);
        value = node.get<int>();
    }
    void read(const char *key, Tree &node, double &value) {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        if (node.is_number()) {
            value = stored(node.get<double>());
        } else if (node.is_null()) {
            value = unset;
        } else if (node == plusInfinity) {
            value = infinity;
        } else {
            require(node == minusInfinity, key);
            value = -infinity;
        }
    }
    void read(const char *key, Tree &node, std::string &text) {
        require(node.is_string() && plw::isUtf8(node.get_ref<const std::string &>()), key);
        text = std::move(node.get_ref<std::string &>());
    }
    void read(const char *key, Tree &node, std::vector<double> &values) {
        require(node.is_binary() && node.get_binary().has_subtype() &&
                    node.get_binary().subtype() == doublesTag && node.get_binary().size() % 8 == 0,
                key);
        const auto &bytes = node.get_binary();
        values.resize(bytes.size() / 8);
        for (std::size_t i = 0; i < values.size(); ++i) values[i] = stored(doubleAt(&bytes[i * 8]));
        node = nullptr;
    }
    template<class T> void read(const char *key, Tree &node, std::vector<T> &records) {
        require(node.is_array(), key);
        records.clear();
        for (Tree &item : node) read(key, item, records.emplace_back());
    }
    template<class T, std::size_t n>
    void read(const char *key, Tree &node, std::array<T, n> &records) {
        require(node.is_array() && node.size() == n, key);
        for (std::size_t i = 0; i < n; ++i) read(key, node[i], records[i]);
    }
    template<class T> void read(const char *key, Tree &node, T &record) {
        require(node.is_object(), key);
        Reader inner(node, version);
        fields(inner, record);
    }

    Tree &tree;
    const Version version;
};

} // namespace plotwerk

#endif
