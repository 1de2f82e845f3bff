// SPDX-License-Identifier: Apache-2.0
#include "check/CodecXml.h"

#include <expat.h>
#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <type_traits>
#include <utility>

#include "check/CodecListBuilder.h"

namespace ogmprobe::check {
namespace {

struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser>;

bool isNameCharacter(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '_' || letter == '-' || letter == '.';
}

/** Whether the name is neither hidden nor ".." nor empty. */
bool isPlainName(std::string_view name) {
    return !name.empty() && name.front() != '.' &&
           std::all_of(name.begin(), name.end(), isNameCharacter);
}

Attributes attributesOf(const XML_Char** pairs) {
    Attributes attributes;
    for (; pairs[0] != nullptr; pairs += 2) {
        attributes[pairs[0]] = pairs[1];
    }
    return attributes;
}

/** Reads files, and the files that they include, into a builder. */
class Reader {
  public:
    Reader(const XmlFiles& files, CodecXml& result) : mFiles(files), mResult(result) {}

    void read(const std::string& path);
    void finish() { mResult.decoders = mBuilder.decoders(); }

  private:
    static void onStart(void* self, const XML_Char* name, const XML_Char** attributes) {
        static_cast<Reader*>(self)->start(name, attributesOf(attributes));
    }
    static void onEnd(void* self, const XML_Char* name) { static_cast<Reader*>(self)->end(name); }
    static void onDocumentType(void* self, const XML_Char*, const XML_Char*, const XML_Char*, int) {
        static_cast<Reader*>(self)->fail("it has a document type declaration, which is refused");
    }

    void start(const std::string& name, const Attributes& attributes);
    void end(const std::string& name);
    void include(const Attributes& attributes);
    void fail(const std::string& reason);

    const XmlFiles& mFiles;
    CodecXml& mResult;
    CodecListBuilder mBuilder;
    /** The files that are being read, each included by the one before. */
    std::vector<std::string> mPaths;
    XML_Parser mParser = nullptr;
    size_t mDepth = 0;
    size_t mRead = 0;
};

void Reader::read(const std::string& path) {
    const auto file = mFiles.find(path);
    if (file == mFiles.end()) {
        mResult.missing.push_back({path, mPaths.empty() ? "" : mPaths.back()});
        return;
    }
    if (++mRead > kMaxXmlFiles) {
        fail(fmt::format("there are more than {} files", kMaxXmlFiles));
        return;
    }
    const Parser parser(XML_ParserCreate(nullptr));
    XML_SetUserData(parser.get(), this);
    XML_SetElementHandler(parser.get(), onStart, onEnd);
    XML_SetStartDoctypeDeclHandler(parser.get(), onDocumentType);
    XML_Parser outerParser = std::exchange(mParser, parser.get());
    const size_t outerDepth = std::exchange(mDepth, 0);
    mPaths.push_back(path);
    const std::string& text = file->second;
    if (XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), 1) != XML_STATUS_OK) {
        fail(XML_ErrorString(XML_GetErrorCode(parser.get())));
    }
    mPaths.pop_back();
    mDepth = outerDepth;
    mParser = outerParser;
}

void Reader::start(const std::string& name, const Attributes& attributes) {
    if (!mResult.error.empty()) {
        return;
    }
    if (++mDepth > kMaxXmlDepth) {
        fail(fmt::format("its elements are nested more than {} deep", kMaxXmlDepth));
        return;
    }
    if (mDepth == 1 && name != "MediaCodecs" && name != "Included") {
        fail(fmt::format("its root is <{}>, not <MediaCodecs>: it is no list of codecs", name));
    } else if (name == "Include") {
        include(attributes);
    } else if (!mBuilder.begin(name, attributes)) {
        fail(fmt::format("it lists more than {} decoders", kMaxDecoders));
    }
}

void Reader::end(const std::string& name) {
    --mDepth;
    if (mResult.error.empty()) {
        mBuilder.end(name);
    }
}

void Reader::include(const Attributes& attributes) {
    const auto href = attributes.find("href");
    const std::string path =
            href == attributes.end() ? "" : includedPath(mPaths.back(), href->second);
    if (path.empty()) {
        fail("its <Include> names no .xml file beside it or in a folder below");
    } else if (std::find(mPaths.begin(), mPaths.end(), path) != mPaths.end()) {
        fail(fmt::format("it includes {}, which is being read already", path));
    } else if (mPaths.size() >= kMaxIncludeDepth) {
        fail(fmt::format("files include each other more than {} deep", kMaxIncludeDepth));
    } else {
        read(path);
    }
}

/** Keeps only the first failure, because the others follow from it. */
void Reader::fail(const std::string& reason) {
    if (mParser == nullptr) {
        mResult.error = reason;
        return;
    }
    if (mResult.error.empty()) {
        mResult.error =
                fmt::format("{}:{}: {}", mPaths.back(), XML_GetCurrentLineNumber(mParser), reason);
    }
    XML_StopParser(mParser, XML_FALSE);
}

}  // namespace

CodecXml readCodecXml(const std::vector<std::string>& paths, const XmlFiles& files) {
    CodecXml result;
    Reader reader(files, result);
    for (const std::string& path : paths) {
        if (result.error.empty()) {
            reader.read(path);
        }
    }
    reader.finish();
    return result;
}

bool canInclude(const std::string& path, const std::string& included) {
    const std::string folder = (std::filesystem::path(path).parent_path() / "").string();
    return included.starts_with(folder) &&
           includedPath(path, std::string_view(included).substr(folder.size())) == included;
}

std::string includedPath(const std::string& path, std::string_view href) {
    if (!href.ends_with(".xml")) {
        return "";
    }
    for (std::string_view rest = href;;) {
        const size_t slash = rest.find('/');
        if (!isPlainName(rest.substr(0, slash))) {
            return "";
        }
        if (slash == std::string_view::npos) {
            return (std::filesystem::path(path).parent_path() / href).string();
        }
        rest.remove_prefix(slash + 1);
    }
}

}  // namespace ogmprobe::check
