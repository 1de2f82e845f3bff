// SPDX-License-Identifier: Apache-2.0
#include "options/CommandName.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace ogmprobe {
namespace {

constexpr const char* kDefaultCommand = "info";

/** Options before a command's name that are followed by a value. */
constexpr std::array<std::string_view, 4> kWithValue = {"--plugin", "--log", "--color",
                                                        "--timeout"};

bool takesValue(const std::string& option) {
    return std::find(kWithValue.begin(), kWithValue.end(), option) != kWithValue.end();
}

size_t firstWord(const std::vector<std::string>& arguments) {
    size_t i = 0;
    while (i < arguments.size() && arguments[i] != "-" && arguments[i].starts_with("-")) {
        i += takesValue(arguments[i]) ? 2 : 1;
    }
    return i;
}

bool looksLikeFile(const std::string& word) {
    return word == "-" || word.find_first_of("./") != std::string::npos ||
           access(word.c_str(), F_OK) == 0;
}

/** Number of letters to change, add, remove or swap with the next one. */
size_t distanceBetween(const std::string& a, const std::string& b) {
    std::vector<std::vector<size_t>> cost(a.size() + 1, std::vector<size_t>(b.size() + 1));
    for (size_t i = 0; i <= a.size(); ++i) {
        for (size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            const size_t changed = a[i - 1] == b[j - 1] ? 0 : 1;
            cost[i][j] = std::min(
                    {cost[i - 1][j - 1] + changed, cost[i - 1][j] + 1, cost[i][j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
            }
        }
    }
    return cost[a.size()][b.size()];
}

}  // namespace

std::optional<std::string> nearestName(const std::string& written,
                                       const std::vector<std::string>& names) {
    constexpr size_t kNear = 3;
    std::optional<std::string> nearest;
    size_t least = kNear + 1;
    for (const std::string& name : names) {
        const size_t distance = name.starts_with(written) ? 1 : distanceBetween(written, name);
        if (distance < least && distance < name.size()) {
            least = distance;
            nearest = name;
        }
    }
    return nearest;
}

std::vector<std::string> withCommand(std::vector<std::string> arguments,
                                     const std::vector<std::string>& names) {
    const size_t first = firstWord(arguments);
    if (first >= arguments.size()) {
        return arguments;
    }
    const std::string& word = arguments[first];
    const bool isCommand = std::find(names.begin(), names.end(), word) != names.end();
    if (!isCommand && looksLikeFile(word)) {
        arguments.insert(arguments.begin(), kDefaultCommand);
    }
    return arguments;
}

}  // namespace ogmprobe
