#include "plotwerk/model/errorColumns.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace plotwerk {

namespace {

enum class Side { both, above, below };

// What stands before and after the name of the owner.
struct Form {
    std::string_view before, after;
    Side side = Side::both;
};

// A name and the unit at its end: "U (V)" is "U" and "(V)".
struct NameAndUnit {
    std::string_view name;
    std::string_view unit; // with its brackets; empty for none
};

} // namespace

static constexpr Form forms[] = {
    {"", " error"},          {"", " err"}, {"", "_error"}, {"", "_err"},    {"", " \u00b1"},
    {"\u00b1", ""},          {"d", ""},    {"sigma ", ""}, {"\u03c3 ", ""}, {"", " +", Side::above},
    {"", " -", Side::below},
};

static constexpr std::string_view wordsBehind[] = {"err", "error", "\u00b1", "sigma", "\u03c3"};

static NameAndUnit splitUnit(std::string_view name) {
    const char closing = name.empty() ? '\0' : name.back();
    if (closing != ')' && closing != ']') return {name, {}};
    const std::size_t opening = name.rfind(closing == ')' ? '(' : '[');
    if (opening == std::string_view::npos) return {name, {}};
    const std::size_t last = name.substr(0, opening).find_last_not_of(' ');
    if (last == std::string_view::npos) return {name, {}};
    return {name.substr(0, last + 1), name.substr(opening)};
}

// The name of the owner; empty where the name hasn't that form.
static std::string_view ownerIn(std::string_view name, const Form &form) {
    if (name.size() <= form.before.size() + form.after.size() || !name.starts_with(form.before) ||
        !name.ends_with(form.after))
        return {};
    return name.substr(form.before.size(), name.size() - form.before.size() - form.after.size());
}

namespace {

// The columns of a table by their names, with and without their units; of equal ones the first.
class Names {
  public:
    explicit Names(const Table &table) {
        add(table.x.name, 0);
        for (std::size_t i = 0; i < table.y.size(); ++i) add(table.y[i].name, i + 1);
    }

    std::optional<std::size_t> find(std::string_view name) const { return findIn(whole, name); }

    // The owner called so, or so up to the unit.
    std::optional<std::size_t> owner(std::string_view name, std::string_view unit) const {
        if (const auto found = find(name)) return found;
        return unit.empty() ? findIn(unitless, name) : findIn(withUnit, key(name, unit));
    }

  private:
    static std::string key(std::string_view name, std::string_view unit) {
        return std::string(name).append(unit);
    }

    template<class Map, class Key>
    static std::optional<std::size_t> findIn(const Map &map, const Key &name) {
        const auto found = map.find(name);
        return found == map.end() ? std::nullopt : std::optional(found->second);
    }

    void add(const std::string &name, std::size_t column) {
        whole.emplace(name, column);
        const NameAndUnit split = splitUnit(name);
        if (split.unit.empty()) return;
        unitless.emplace(split.name, column);
        withUnit.emplace(key(split.name, split.unit), column);
    }

    std::unordered_map<std::string_view, std::size_t> whole;
    std::unordered_map<std::string_view, std::size_t> unitless;
    std::unordered_map<std::string, std::size_t> withUnit;
};

struct Owner {
    std::size_t column;
    Side side;
};

} // namespace

// What a column of that name has the errors of; nothing if there is no such column.
static std::optional<Owner> ownerNamed(std::string_view name, const Names &names,
                                       std::size_t plainX) {
    const NameAndUnit split = splitUnit(name);
    for (const NameAndUnit &part : {NameAndUnit{name, {}}, split})
        for (const Form &form : forms) {
            const std::string_view owner = ownerIn(part.name, form);
            if (owner.empty()) continue;
            if (const auto column = names.owner(owner, part.unit)) return Owner{*column, form.side};
            if (owner == "X") return Owner{plainX, form.side};
        }
    return std::nullopt;
}

ErrorColumns::ErrorColumns(const Table &table)
    : owners(table.y.size(), noOwner), named(table.y.size() + 2), behind(table.y.size() + 1) {
    findNamed(table);
    findBehind(table);
}

void ErrorColumns::findNamed(const Table &table) {
    const Names names(table);
    std::vector<Errors> pairs(named.size());
    std::vector<std::pair<std::size_t, std::size_t>> halves; // a column, and its owner
    for (std::size_t i = 0; i < table.y.size(); ++i) {
        const Column &column = table.y[i];
        first.push_back(*names.find(column.name));
        const auto owner = ownerNamed(column.name, names, named.size() - 1);
        if (!owner) continue;
        if (owner->side == Side::both) {
            owners[i] = static_cast<int>(owner->column);
            if (Errors &errors = named[owner->column]; !errors) errors = {&column, &column};
            continue;
        }
        halves.emplace_back(i, owner->column);
        Errors &pair = pairs[owner->column];
        const Column *&half = owner->side == Side::above ? pair.above : pair.below;
        if (half == nullptr) half = &column;
    }
    for (const auto &[column, owner] : halves) {
        const Errors &pair = pairs[owner];
        if (pair.above == nullptr || pair.below == nullptr) continue;
        owners[column] = static_cast<int>(owner);
        if (!named[owner]) named[owner] = pair;
    }
}

void ErrorColumns::findBehind(const Table &table) {
    std::size_t before = 0;
    for (std::size_t i = 0; i < table.y.size(); ++i) {
        if (owners[i] != noOwner) continue;
        const Column &column = table.y[i];
        const auto [word, unit] = splitUnit(column.name);
        const std::size_t owner = word == "dx" ? 0 : before;
        const std::string &ownerName = owner == 0 ? table.x.name : table.y[owner - 1].name;
        const std::string_view ownerUnit = splitUnit(ownerName).unit;
        const bool isWord = word == "dx" || (word == "dy" && owner > 0) ||
                            std::ranges::find(wordsBehind, word) != std::end(wordsBehind);
        if (isWord && (unit.empty() || ownerUnit.empty() || unit == ownerUnit)) {
            owners[i] = ownerInFront;
            if (Errors &errors = behind[owner]; !errors) errors = {&column, &column};
        } else {
            before = i + 1;
        }
    }
    if (before > 0) return;
    owners.assign(owners.size(), noOwner);
    named.assign(named.size(), {});
    behind.assign(behind.size(), {});
}

std::string errorNameAlong(const std::string &errorName, const std::string &oldName,
                           const std::string &newName) {
    const NameAndUnit split = splitUnit(errorName);
    const NameAndUnit oldSplit = splitUnit(oldName);
    const NameAndUnit newSplit = splitUnit(newName);
    for (const NameAndUnit &part : {NameAndUnit{errorName, {}}, split})
        for (const Form &form : forms) {
            const std::string_view owner = ownerIn(part.name, form);
            const bool whole = owner == oldName;
            if (owner.empty() || (!whole && owner != oldSplit.name)) continue;
            std::string name(form.before);
            name.append(whole ? newName : newSplit.name).append(form.after);
            const std::string_view unit = whole ? part.unit : newSplit.unit;
            if (!part.unit.empty() && !unit.empty()) name.append(" ").append(unit);
            return name;
        }
    return errorName;
}

} // namespace plotwerk
