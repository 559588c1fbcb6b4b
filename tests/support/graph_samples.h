#pragma once

#include <cmath>
#include <cstdio>
#include <initializer_list>

#include <gtest/gtest.h>

#include "report/graph_spec.h"

inline void nameSlots(Block<TextSlot>& slots, const char* format) {
    int number = 0;
    for (TextSlot& slot : slots) std::snprintf(slot.text, sizeof slot.text, format, ++number);
}

inline void nameSlots(Block<TextSlot>& slots, std::initializer_list<const char*> names) {
    ASSERT_EQ(slots.allocate(names.size()), success);
    TextSlot* slot = slots.begin();
    for (const char* name : names) std::snprintf((slot++)->text, textSlotSize, "%s", name);
}

// A description with names "series 1", "item 1", "1", "vector 1" and so on, and values 0.
inline void describeGraph(GraphSpec& spec, std::uint32_t kind, std::size_t series, std::size_t items,
                          std::size_t vectors = 0) {
    ASSERT_EQ(spec.allocate(series, items, vectors), success);
    spec.kind = kind;
    nameSlots(spec.seriesNames, "series %d");
    nameSlots(spec.itemLabels, "item %d");
    nameSlots(spec.numberLabels, "%d");
    nameSlots(spec.vectorNames, "vector %d");
}

// A picture of each kind as one might come out of an analysis.
inline void describeSample(GraphSpec& spec, std::uint32_t kind) {
    const std::size_t series[] = {1, 2, 3, 3, 2, 3, 2, 3, 2};
    const std::size_t items = kind == 0 ? 24 : 60;
    describeGraph(spec, kind, series[kind], items, kind < 5 ? 0 : 5);
    if (kind >= 5)
        nameSlots(spec.vectorNames, {"sepal length", "sepal width", "petal length", "petal width",
                                     "n\xE9"
                                     "ctar & <pollen>"});
    if (kind == 2) nameSlots(spec.seriesNames, {"hours", "temperature", "pressure"});
    spec.numbering = kind == 4 || kind == 8;
    spec.vectorOption = kind == 5;
    const bool isLine = kind >= 1 && kind <= 3;
    const double turn = 0.2 * kind, scale = kind == 6 ? 1e-4 : 1.0; // long numbers at the axes
    double* value = spec.values.data();
    for (std::size_t i = 0; i < items; ++i) {
        for (std::size_t k = 0; k < series[kind]; ++k) {
            const double t = static_cast<double>(i) / 10, s = static_cast<double>(k);
            *value++ = isLine && k == 0
                           ? t
                           : scale * ((1.8 - 0.4 * s) * std::sin(t * (isLine ? s : 3.7 + s) + turn) +
                                      0.3 * std::cos(t * 11));
        }
    }
    for (std::size_t v = 0; v < spec.vectorNames.size(); ++v) {
        const double angle = 0.3 + static_cast<double>(v * v) * 0.35 + turn;
        double* const row = spec.vectorValues.data() + v * series[kind];
        row[0] = 0.95 * std::cos(angle);
        row[1] = 0.9 * std::sin(angle);
    }
}
