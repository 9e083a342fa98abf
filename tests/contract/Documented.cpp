// SPDX-License-Identifier: MIT
// Finds the results that OrvalisAPI.h documents for each function.
#include "tests/contract/Documented.h"

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace contract {

namespace {

using Codes = std::set<std::int32_t>;

std::string header()
{
    std::ifstream in(ORVALIS_HEADER);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

/// Calls `use` with each match of `pattern` in `text`.
template <class Use> void forEach(const std::string &text, const char *pattern, Use use)
{
    const std::regex expression(pattern);
    for (std::sregex_iterator it(text.begin(), text.end(), expression), end; it != end; ++it)
        use(*it);
}

/// The header, read once.
class Documentation {
public:
    Documentation()
    {
        const std::string text = header();
        forEach(text, R"((ORVALIS_OK|ORVALIS_ERROR_\w+) = (-?\d+))",
                [&](const std::smatch &row) { values_[row[1]] = std::stoi(row[2]); });
        general_ = codesOf(text.substr(0, text.find("After a failure output arguments")));
        readFunctions(text);
    }
    bool names(const std::string &function, std::int32_t result) const
    {
        const auto found = functions_.find(function);
        return general_.contains(result) ||
               (found != functions_.end() && found->second.contains(result));
    }

private:
    Codes codesOf(const std::string &text) const
    {
        Codes codes;
        forEach(text, R"(ORVALIS_OK|ORVALIS_ERROR_\w+)",
                [&](const std::smatch &name) { codes.insert(values_.at(name[0])); });
        return codes;
    }
    /// Reads comments and functions in the order of the header. The previous comment applies to a
    /// function without its own.
    void readFunctions(const std::string &text)
    {
        std::string group;
        std::string own;
        forEach(
            text, R"(/\*\*[^]*?\*/|ORVALIS_EXPORT int32_t (\w+)\()", [&](const std::smatch &piece) {
                const std::string found = piece[0];
                if (!piece[1].matched) {
                    const bool isGroup = found.find("@name") != std::string::npos;
                    (isGroup ? group : own) = found;
                    return;
                }
                Codes &codes = functions_[piece[1]];
                codes = codesOf(group + own);
                forEach(group + own, R"(\b(?:as|for|and)[\s*]+(Orvalis\w+)\(\))",
                        [&](const std::smatch &other) {
                            codes.insert(functions_[other[1]].begin(), functions_[other[1]].end());
                        });
            });
    }

    std::map<std::string, std::int32_t> values_;
    Codes general_;
    std::map<std::string, Codes> functions_;
};

} // namespace

bool isDocumented(const std::string &function, std::int32_t result)
{
    static const Documentation documentation;
    return documentation.names(function, result);
}

} // namespace contract
