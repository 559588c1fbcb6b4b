#pragma once

#include <string_view>

// Takes what an import writes, in pieces of many lines.
class TableSink {
public:
    virtual ~TableSink() = default;
    // False when it cannot be written; nothing more is then asked for.
    virtual bool write(std::string_view piece) = 0;
};
