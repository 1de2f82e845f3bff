// SPDX-License-Identifier: Apache-2.0
#include "SessionMutator.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "page/PageFormat.h"

namespace android::ogm::fuzz {

namespace {

constexpr size_t kMaxChanges = 4;
/** How much a packet may grow. */
constexpr size_t kMaxGrowth = 600;

template <typename T>
typename std::vector<T>::iterator at(std::vector<T>& all, size_t index) {
    return all.begin() + static_cast<ptrdiff_t>(index);
}

Bytes cutTo(Bytes bytes, size_t maxSize) {
    bytes.resize(std::min(bytes.size(), maxSize));
    return bytes;
}

}  // namespace

Bytes SessionMutator::mutate(const Bytes& bytes, size_t maxSize) {
    SessionInput input(bytes.data(), bytes.size());
    PagedFile pieces = splitIntoPages(input.file);
    for (size_t i = below(kMaxChanges) + 1; i > 0; --i) {
        changeOnce(&input, &pieces, maxSize);
    }
    input.file = joinPages(pieces);
    return cutTo(input.bytes(), maxSize);
}

Bytes SessionMutator::cross(const Bytes& one, const Bytes& other, size_t maxSize) {
    SessionInput input(one.data(), one.size());
    const SessionInput second(other.data(), other.size());
    if (oneIn(2)) {
        input.calls.insert(at(input.calls, below(input.calls.size() + 1)), second.calls.begin(),
                           second.calls.end());
    }
    if (oneIn(3)) {
        input.faults = second.faults;
    }
    PagedFile pieces = splitIntoPages(input.file);
    const PagedFile others = splitIntoPages(second.file);
    const size_t begin = below(others.size() + 1);
    const size_t count = below(others.size() - begin + 1);
    const auto from = others.begin() + static_cast<ptrdiff_t>(begin);
    pieces.insert(at(pieces, below(pieces.size() + 1)), from, from + static_cast<ptrdiff_t>(count));
    input.file = joinPages(pieces);
    return cutTo(input.bytes(), maxSize);
}

void SessionMutator::changeOnce(SessionInput* input, PagedFile* pieces, size_t maxSize) {
    switch (below(12)) {
        case 0:
            changeSource(input);
            break;
        case 1:
            changeFault(input);
            break;
        case 2:
        case 3:
            changeCalls(input);
            break;
        case 4:
            changePages(pieces);
            break;
        case 5:
            changeField(pieces);
            break;
        case 6:
            changePackets(pieces);
            break;
        case 7:
            changeStreamHeader(pieces);
            break;
        case 8: {
            // Mutate all bytes, whatever the structure.
            Bytes file = joinPages(*pieces);
            changeBytes(&file, maxSize);
            *pieces = splitIntoPages(file);
            break;
        }
        default:
            if (FilePiece* const page = anyPage(pieces);
                page != nullptr && !page->packets.empty()) {
                Bytes& packet = page->packets[below(page->packets.size())];
                changeBytes(&packet, packet.size() + kMaxGrowth);
            }
            break;
    }
}

void SessionMutator::changeSource(SessionInput* input) {
    switch (below(4)) {
        case 0:
            input->elementary = !input->elementary;
            break;
        case 1:
            input->composedLog = !input->composedLog;
            break;
        case 2:
            input->sizeKind = static_cast<ReportedSize>(below(8));
            break;
        default:
            input->sizeValue =
                    static_cast<uint16_t>(below(oneIn(2) ? 0x10000 : input->file.size()));
            break;
    }
}

void SessionMutator::changeFault(SessionInput* input) {
    if (!input->faults.empty() && oneIn(3)) {
        input->faults.pop_back();
        return;
    }
    Fault fault;
    fault.kind = static_cast<FaultKind>(below(kFaultKinds));
    fault.firstRead = static_cast<uint16_t>(below(size_t{1} << below(12)));
    fault.count = static_cast<uint8_t>(below(3));
    if (input->faults.size() < SessionInput::kMaxFaults) {
        input->faults.push_back(fault);
    } else {
        input->faults[below(input->faults.size())] = fault;
    }
}

Call SessionMutator::anyCall() {
    Call call;
    call.operation = static_cast<Operation>(below(kOperations));
    call.argument = static_cast<uint8_t>(below(4) | below(32) << 3);
    call.time = static_cast<uint16_t>(oneIn(2) ? below(100) : below(0x10000));
    return call;
}

void SessionMutator::changeCalls(SessionInput* input) {
    std::vector<Call>& calls = input->calls;
    const size_t index = below(calls.size());
    if (calls.empty() || oneIn(3)) {
        calls.insert(at(calls, index), anyCall());
        return;
    }
    switch (below(5)) {
        case 0:
            calls.erase(at(calls, index));
            break;
        case 1:
            calls.insert(at(calls, index), Call(calls[index]));
            break;
        case 2:
            std::swap(calls[index], calls[below(calls.size())]);
            break;
        case 3:
            calls[index].time = anyCall().time;
            break;
        default:
            calls[index].argument = anyCall().argument;
            break;
    }
}

FilePiece* SessionMutator::anyPage(PagedFile* pieces) {
    const size_t begin = below(pieces->size());
    for (size_t i = 0; i < pieces->size(); ++i) {
        FilePiece& piece = (*pieces)[(begin + i) % pieces->size()];
        if (piece.isPage) {
            return &piece;
        }
    }
    return nullptr;
}

void SessionMutator::changePages(PagedFile* pieces) {
    if (pieces->empty()) {
        return;
    }
    const size_t index = below(pieces->size());
    const size_t target = below(pieces->size());
    switch (below(5)) {
        case 0:
            pieces->erase(at(*pieces, index));
            break;
        case 1:
            std::swap((*pieces)[index], (*pieces)[target]);
            break;
        case 2: {
            FilePiece copy = (*pieces)[index];
            pieces->insert(at(*pieces, target), std::move(copy));
            break;
        }
        case 3: {
            FilePiece junk;
            junk.junk.assign(1 + below(300), static_cast<uint8_t>(below(256)));
            pieces->insert(at(*pieces, target), std::move(junk));
            break;
        }
        default: {
            FilePiece page;
            page.isPage = true;
            page.serialNo = (*pieces)[index].serialNo;
            page.granule = (*pieces)[target].granule + below(3);
            page.packets.assign(1 + below(12), Bytes(below(40), static_cast<uint8_t>(below(16))));
            pieces->insert(at(*pieces, target), std::move(page));
            break;
        }
    }
}

void SessionMutator::changeField(PagedFile* pieces) {
    FilePiece* const page = anyPage(pieces);
    if (page == nullptr) {
        return;
    }
    constexpr uint64_t kGranules[] = {0, 1, ~uint64_t{0}, uint64_t{1} << 63, uint64_t{1} << 32};
    switch (below(6)) {
        case 0:
            page->granule += below(2000);
            break;
        case 1:
            page->granule = kGranules[below(std::size(kGranules))];
            break;
        case 2:
            page->granule -= std::min<uint64_t>(page->granule, below(2000));
            break;
        case 3:
            page->serialNo = anyPage(pieces)->serialNo;
            break;
        case 4:
            page->flags = static_cast<uint8_t>(below(oneIn(4) ? 256 : 8));
            break;
        default:
            page->version = static_cast<uint8_t>(oneIn(2) ? 0 : below(256));
            break;
    }
}

void SessionMutator::changePackets(PagedFile* pieces) {
    FilePiece* const page = anyPage(pieces);
    if (page == nullptr || page->packets.empty()) {
        return;
    }
    std::vector<Bytes>& packets = page->packets;
    const size_t index = below(packets.size());
    switch (below(6)) {
        case 0:
            packets.erase(at(packets, index));
            break;
        case 1: {
            Bytes copy = packets[index];
            packets.insert(at(packets, index), std::move(copy));
            break;
        }
        case 2: {
            const size_t size = below(packets[index].size() + 1);
            Bytes tail(at(packets[index], size), packets[index].end());
            packets[index].resize(size);
            packets.insert(at(packets, index) + 1, std::move(tail));
            break;
        }
        case 3:
            if (index + 1 < packets.size()) {
                packets[index].insert(packets[index].end(), packets[index + 1].begin(),
                                      packets[index + 1].end());
                packets.erase(at(packets, index) + 1);
            }
            break;
        case 4:
            // A packet that continues on the next page of its stream.
            packets.back().resize((packets.back().size() / kUnterminated + 1) * kUnterminated);
            page->isOpen = !page->isOpen;
            break;
        default:
            page->flags ^= 1U;
            break;
    }
}

void SessionMutator::changeStreamHeader(PagedFile* pieces) {
    constexpr const char* kSubtypes[] = {"FMP4", "mpg2", "H264", "DIVX", "DIV3", "WMV3",
                                         "VP8F", "MJPG", "0001", "0002", "0050", "0055",
                                         "00FF", "0160", "2000", "2001", "XVID"};
    constexpr size_t kSubtypeOffset = 9;
    /** Offset and size of the other fields. */
    constexpr std::pair<size_t, size_t> kFields[] = {{17, 8}, {25, 8}, {41, 2}, {45, 4}, {49, 4}};
    constexpr uint8_t kBitsPerSample[] = {8, 16, 24};
    constexpr size_t kHeaderSize = 53;
    std::vector<Bytes*> headers;
    for (FilePiece& piece : *pieces) {
        if (piece.beginsStream()) {
            headers.push_back(&piece.packets[0]);
        }
    }
    if (headers.empty()) {
        return;
    }
    Bytes& header = *headers[below(headers.size())];
    header.resize(std::max(header.size(), kHeaderSize));
    switch (below(4)) {
        case 0: {
            const char* const subtype = kSubtypes[below(std::size(kSubtypes))];
            std::copy_n(subtype, 4, at(header, kSubtypeOffset));
            const bool isAudio = *subtype == '0' || *subtype == '2';
            std::copy_n(isAudio ? "audio" : "video", 5, at(header, 1));
            break;
        }
        case 1:
            header[41] = kBitsPerSample[below(std::size(kBitsPerSample))];
            header[42] = 0;
            break;
        case 2:
            header.resize(below(header.size()));
            break;
        default: {
            const auto [offset, size] = kFields[below(std::size(kFields))];
            for (size_t i = 0; i < size; ++i) {
                header[offset + i] = static_cast<uint8_t>(oneIn(2) ? 0 : below(256));
            }
            break;
        }
    }
}

void SessionMutator::changeBytes(Bytes* bytes, size_t maxSize) {
    const size_t size = bytes->size();
    const size_t room = std::max(maxSize, size);
    bytes->resize(room);
    bytes->resize(mMutateBytes(bytes->data(), size, room));
}

}  // namespace android::ogm::fuzz
