#pragma once

#include <string_view>

// Whether texts are alike but for the case of their letters A to Z.
bool equalButCase(std::string_view a, std::string_view b);
