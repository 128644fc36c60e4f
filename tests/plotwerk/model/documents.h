// documents.h - small documents to test on, and their text form.
#ifndef TESTS_PLOTWERK_MODEL_DOCUMENTS_H
#define TESTS_PLOTWERK_MODEL_DOCUMENTS_H

#include "plotwerk/model/document.h"
#include "tests/plotwerk/base/refusalOf.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>
#include <utility>
#include <vector>

constexpr double nan_ = plotwerk::unset;
constexpr double infinity = std::numeric_limits<double>::infinity();

inline plotwerk::Column column(std::string name, std::vector<double> values) {
    plotwerk::Column result;
    result.name = std::move(name);
    result.values = std::move(values);
    return result;
}

// A table of curves that are all named and filled.
inline plotwerk::Table table(std::vector<double> x, std::vector<plotwerk::Column> y) {
    return {column("x", std::move(x)), std::move(y), {}};
}

inline plotwerk::Document documentOf(plotwerk::Table only) {
    plotwerk::Document document;
    document.name = "test";
    document.sources.push_back({"Data", {std::move(only)}});
    return document;
}

// As documentOf, with its first curve selected.
inline plotwerk::Document selectedOf(plotwerk::Table only) {
    only.y.front().rank = 1;
    return documentOf(std::move(only));
}

// Two sources: "A" with tables (a, b) and (c), and "B" with the table (a).
inline plotwerk::Document sample() {
    plotwerk::Document document;
    document.name = "test";
    document.sources = {{"A",
                         {table({1, 2}, {column("a", {1, 2}), column("b", {3, 4})}),
                          table({1}, {column("c", {5})})}},
                        {"B", {table({1}, {column("a", {6})})}}};
    return document;
}

// "NAME=VALUE,VALUE"
inline std::string textOf(const plotwerk::Column &column) {
    std::string text = column.name + "=";
    for (std::size_t i = 0; i < column.values.size(); ++i) {
        char number[32];
        std::snprintf(number, sizeof number, "%s%.17g", i > 0 ? "," : "", column.values[i]);
        text += number;
    }
    return text;
}

// Columns are separated by blanks.
inline std::string textOf(const plotwerk::Table &table) {
    std::string text = textOf(table.x);
    for (const plotwerk::Column &y : table.y) text.append(" ").append(textOf(y));
    return text;
}

// Tables are separated by "; ", sources by " | ".
inline std::string textOf(const plotwerk::Document &document) {
    std::string text;
    for (const plotwerk::Source &source : document.sources) {
        text.append(text.empty() ? "" : " | ").append(source.name).append(": ");
        for (std::size_t i = 0; i < source.tables.size(); ++i)
            text.append(i > 0 ? "; " : "").append(textOf(source.tables[i]));
    }
    return text;
}

// As the other one. A refused document must be as it was.
template<typename Work> std::string refusalOf(plotwerk::Document &document, Work work) {
    const std::string before = textOf(document);
    const std::string refusal = refusalOf([&] { work(document); });
    EXPECT_TRUE(refusal.empty() || textOf(document) == before) << refusal;
    return refusal;
}

#endif
