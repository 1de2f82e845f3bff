// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <zlib.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

/** A second implementation of how a page's script reads the page. */
namespace ogmprobe::timeline::test {

/** The text of the page's script element with this identifier. */
inline std::string scriptText(const std::string& page, const std::string& id) {
    const std::string begin = "id=\"" + id + "\">";
    const size_t from = page.find(begin) + begin.size();
    return page.substr(from, page.find("</script>", from) - from);
}

inline std::vector<uint8_t> fromBase64(const std::string& text) {
    const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::vector<uint8_t> bytes;
    uint32_t bits = 0;
    int count = 0;
    for (const char letter : text) {
        const size_t value = letters.find(letter);
        if (value == std::string::npos) {
            break;
        }
        bits = bits << 6 | static_cast<uint32_t>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes.push_back(static_cast<uint8_t>(bits >> count));
        }
    }
    return bytes;
}

inline std::vector<uint8_t> inflated(const std::vector<uint8_t>& bytes, size_t size) {
    std::vector<uint8_t> result(size);
    uLongf got = size;
    if (uncompress(result.data(), &got, bytes.data(), bytes.size()) != Z_OK || got != size) {
        throw std::runtime_error("the columns do not unpack to their sizes");
    }
    return result;
}

/** The columns, one after the other. */
class UnpackedPage {
  public:
    UnpackedPage(const std::string& outlineText, const std::string& columns)
        : mOutline(nlohmann::json::parse(outlineText)) {
        const auto sizes = mOutline["columns"].get<std::vector<size_t>>();
        size_t whole = 0;
        for (const size_t size : sizes) {
            whole += size;
        }
        const std::vector<uint8_t> all = inflated(fromBase64(columns), whole);
        auto begin = all.begin();
        for (const size_t size : sizes) {
            mColumns.emplace_back(begin, begin + static_cast<ptrdiff_t>(size));
            begin += static_cast<ptrdiff_t>(size);
        }
    }
    explicit UnpackedPage(const std::string& page)
        : UnpackedPage(scriptText(page, "outline"), scriptText(page, "columns")) {}

    const nlohmann::json& outline() const { return mOutline; }
    std::vector<int64_t> times(size_t lane) const { return steady(of(lane, 0)); }
    std::vector<uint64_t> sizes(size_t lane) const { return numbers(of(lane, 1)); }
    std::vector<uint8_t> kinds(size_t lane) const { return of(lane, 2); }
    std::vector<int64_t> positions(size_t lane) const {
        const auto lead = mOutline["lanes"][lane]["lead"].get<size_t>();
        const auto packetSizes = sizes(lane);
        std::vector<int64_t> result = differences(of(lane, 3));
        int64_t last = 0;
        for (size_t i = 0; i < result.size(); ++i) {
            last += result[i];
            last += i + lead < result.size() ? static_cast<int64_t>(packetSizes[i + lead]) : 0;
            result[i] = last;
        }
        return result;
    }
    std::vector<uint8_t> digests(size_t lane) const { return of(lane, 5); }

    /** Any column by its place among all, in each way in which columns are written. */
    const std::vector<uint8_t>& bytesAt(size_t column) const { return mColumns.at(column); }
    std::vector<uint64_t> numbersAt(size_t column) const { return numbers(bytesAt(column)); }
    std::vector<int64_t> signedAt(size_t column) const { return differences(bytesAt(column)); }
    std::vector<int64_t> steadyAt(size_t column) const { return steady(bytesAt(column)); }

    static constexpr size_t kOfPages = 6;
    static constexpr size_t kOfALane = 18;

  private:
    const std::vector<uint8_t>& of(size_t lane, size_t column) const {
        return mColumns.at(kOfPages + lane * kOfALane + column);
    }

    static std::vector<uint64_t> numbers(const std::vector<uint8_t>& bytes) {
        std::vector<uint64_t> result;
        uint64_t number = 0;
        unsigned shift = 0;
        for (const uint8_t byte : bytes) {
            number |= uint64_t{byte & 0x7fU} << shift;
            shift += 7;
            if (byte < 0x80) {
                result.push_back(number);
                number = 0;
                shift = 0;
            }
        }
        return result;
    }

    static std::vector<int64_t> differences(const std::vector<uint8_t>& bytes) {
        std::vector<int64_t> result;
        for (const uint64_t number : numbers(bytes)) {
            const auto half = static_cast<int64_t>(number >> 1);
            result.push_back((number & 1) != 0 ? ~half : half);
        }
        return result;
    }

    static std::vector<int64_t> steady(const std::vector<uint8_t>& bytes) {
        std::vector<int64_t> result = differences(bytes);
        int64_t distance = 0;
        int64_t last = 0;
        for (int64_t& number : result) {
            distance += number;
            last += distance;
            number = last;
        }
        return result;
    }

    nlohmann::json mOutline;
    std::vector<std::vector<uint8_t>> mColumns;
};

}  // namespace ogmprobe::timeline::test
