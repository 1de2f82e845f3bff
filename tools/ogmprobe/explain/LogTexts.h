// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string_view>

/**
 * The beginnings of the log lines that explanations are based on. They are part of the plug-in's
 * behaviour: its own tests check each of them.
 */
namespace ogmprobe::log_text {

// Sniffing.
inline constexpr std::string_view kSniffReadFailed = "Sniff:DataSource read fail";
inline constexpr std::string_view kSniffNoPage = "search Ogm signature fail";
inline constexpr std::string_view kSniffNoHeader = "Sniff:parseOgmHeader fail";
inline constexpr std::string_view kSniffOnlyVorbis = "Sniff:parseOgmHeader fail,isVorbisExist=1";

// Stream headers.
inline constexpr std::string_view kStreamAccepted = "SerialNo = ";
inline constexpr std::string_view kUnknownHeader = "************* unknow header";
inline constexpr std::string_view kUnknownVideo = "unknow video codec";
inline constexpr std::string_view kUnknownAudio = "unknown audio codec";
inline constexpr std::string_view kVorbisHeader = "Verify Vorbis Header";
inline constexpr std::string_view kNoPageData = "Cannot read page data";
inline constexpr std::string_view kHeaderSearchNoHeader = "Cannot read a page header, at ";
inline constexpr std::string_view kHeaderSearchNoPage = "Cannot find a page start,LINE:2774";
inline constexpr std::string_view kReadFailed = "failed to read";

// Codec configuration.
inline constexpr std::string_view kVideoConfigSearch = "OGV_VIDEO_MP4:TYPE:";
inline constexpr std::string_view kAudioConfigSearch = "MPEG audio, type:";
inline constexpr std::string_view kConfigFailed = "collect type[";

// Duration.
inline constexpr std::string_view kDurationSearch = "parseMaxTime: mDataSourceSize=";
inline constexpr std::string_view kDurationNoPage = "parseMaxTime:Cannot ";
inline constexpr std::string_view kDurationOtherStream = "parseMaxTime: This logic stream";
inline constexpr std::string_view kDurationFound = "File duration is ";

// Pages.
inline constexpr std::string_view kSerialOfTrack = "getTrack mSerialNo = ";
inline constexpr std::string_view kTypeOfVideoTrack = "getTrack: isVideo type[";
inline constexpr std::string_view kTypeOfAudioTrack = "getTrack: isAudio type[";
inline constexpr std::string_view kJunkSkipped = "*** Skip ";
inline constexpr std::string_view kWrongVersion = "Version Error";
inline constexpr std::string_view kWrongFlags = "Flag only bits";
inline constexpr std::string_view kNextGranuleNoHeader =
        "getNextGranulePosition:Cannot read a page header";
inline constexpr std::string_view kNextGranuleNoPage =
        "getNextGranulePosition: Cannot find a page start";
inline constexpr std::string_view kNextGranuleFailed = "getNextGranulePosition fail, return";
inline constexpr std::string_view kNextGranuleZero =
        "getNextGranulePosition failed,set averGranulePosition to 0";
inline constexpr std::string_view kNoPayload = "Cannot read page payload";

// Packets.
inline constexpr std::string_view kGranuleFell = "********** mPreGranulePosition is not vaild";
inline constexpr std::string_view kPieceTooShort = "Invalid append buffer size:";
inline constexpr std::string_view kPacketTooShort = "invalid audio packet size:";
inline constexpr std::string_view kPcmWidened = "OGA_AUDIO_PCM,mBitsPerSample == 8";

// Frames of audio.
inline constexpr std::string_view kNoSync = "appendAudioData FAIL!";
inline constexpr std::string_view kFrameConfirmed = "mMP3Header:";
inline constexpr std::string_view kNoFrameConfirmed = "findMP3Header fail size";
inline constexpr std::string_view kNoMatchingFrame = "not found mMP3Header,skip";
inline constexpr std::string_view kFrameWithoutSize = "GetMPEGAudioFrameSize fail";
inline constexpr std::string_view kFrameWithoutRate = "fscod=3";
inline constexpr std::string_view kFrameOfUnknownVersion = "[dequeueAccessUnitAC3]***wrong bsid";
inline constexpr std::string_view kErrorWithoutError = "set  mDequeueMpegAudioOgm :";

/** Lines of interest whose level is lower than that of warnings. */
inline constexpr auto kNotableLines = std::to_array<std::string_view>({
        " *****Track Type[",
        kJunkSkipped,
        "********** mPreGranulePosition",
        kUnknownHeader,
        "Cannot ",
        kDurationFound,
        "Find ",
        kWrongFlags,
        "GetMPEGAudioFrameSize fail",
        kAudioConfigSearch,
        kVideoConfigSearch,
        "Page Starts without",
        kStreamAccepted,
        "Verify Vorbis",
        kWrongVersion,
        "[dequeueAccessUnit",
        "buff size < frame size",
        kReadFailed,
        "found something resembling",
        kFrameWithoutRate,
        "getNextGranulePosition",
        "getTrack mSerialNo",
        "mFirstDataPageOffset",
        kNoMatchingFrame,
        kPcmWidened,
        "parseMaxTime",
        "sniffOgm OK",
});

}  // namespace ogmprobe::log_text
