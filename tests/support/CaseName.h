#pragma once
#include <cctype>
#include <string>

namespace td::test {

// A parameterised case's name from its description: the letters and digits of it.
inline std::string CaseName(const char* description)
{
    std::string name;
    for (const char* c = description; *c; ++c)
        if (std::isalnum(static_cast<unsigned char>(*c)))
            name += *c;
    return name;
}

// For INSTANTIATE_TEST_SUITE_P over cases that carry a `name`.
inline constexpr auto kNamedCase = [](const auto& info) { return CaseName(info.param.name); };

}  // namespace td::test
