#pragma once

#include <cmath>
#include <initializer_list>
#include <iterator>

#include <gtest/gtest.h>

#include "report/graph_spec.h"

inline void setNumbered(TextList& texts, const char* prefix) {
    for (Index i = 0; i < texts.size(); ++i) texts.setFormat(i, "%s%td", prefix, i + 1);
}

inline void setTexts(TextList& texts, std::initializer_list<const char*> names) {
    ASSERT_EQ(texts.allocate(std::ssize(names)), success);
    Index i = 0;
    for (const char* name : names) texts.set(i++, name);
}

// A description with names "series 1", "item 1", "1", "vector 1" and so on, and values 0.
inline void describeGraph(GraphSpec& spec, std::uint32_t kind, Index series, Index items, Index vectors = 0) {
    ASSERT_EQ(spec.allocate(series, items, vectors), success);
    spec.kind = GraphKind{kind};
    setNumbered(spec.seriesNames, "series ");
    setNumbered(spec.itemLabels, "item ");
    setNumbered(spec.numberLabels, "");
    setNumbered(spec.vectorNames, "vector ");
}

// A picture of each kind as one might come out of an analysis.
inline void describeSample(GraphSpec& spec, std::uint32_t kind) {
    const Index series[] = {1, 2, 3, 3, 2, 3, 2, 3, 2};
    const Index items = kind == 0 ? 24 : 60;
    describeGraph(spec, kind, series[kind], items, kind < 5 ? 0 : 5);
    if (kind >= 5)
        setTexts(spec.vectorNames, {"sepal length", "sepal width", "petal length", "petal width",
                                    "n\xE9"
                                    "ctar & <pollen>"});
    if (kind == 2) setTexts(spec.seriesNames, {"hours", "temperature", "pressure"});
    spec.numbering = kind == 4 || kind == 8;
    spec.vectorOption = kind == 5;
    const bool isLine = kind >= 1 && kind <= 3;
    const double turn = 0.2 * kind, scale = kind == 6 ? 1e-4 : 1.0; // long numbers at the axes
    double* value = spec.values.data();
    for (Index i = 0; i < items; ++i) {
        for (Index k = 0; k < series[kind]; ++k) {
            const double t = static_cast<double>(i) / 10, s = static_cast<double>(k);
            *value++ = isLine && k == 0
                           ? t
                           : scale * ((1.8 - 0.4 * s) * std::sin(t * (isLine ? s : 3.7 + s) + turn) +
                                      0.3 * std::cos(t * 11));
        }
    }
    for (Index v = 0; v < spec.vectorNames.size(); ++v) {
        const double angle = 0.3 + static_cast<double>(v * v) * 0.35 + turn;
        double* const row = spec.vectorValues.data() + v * series[kind];
        row[0] = 0.95 * std::cos(angle);
        row[1] = 0.9 * std::sin(angle);
    }
}
