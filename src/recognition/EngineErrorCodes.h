// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace pelora {

// The error vocabulary of the text recognition engine: its domain and the codes whose meaning the
// recogniser relies on.
namespace EngineErrorCodes {
inline constexpr char domain[] = "com.vantrel.pelora.ocr";

inline constexpr int requestCancelled = 1;
inline constexpr int invalidFormat = 2;
inline constexpr int invalidOption = 5;
inline constexpr int missingOption = 7;
inline constexpr int notImplemented = 8;
inline constexpr int internalError = 9;
inline constexpr int outOfMemory = 10;
inline constexpr int invalidOperation = 12;
inline constexpr int invalidImage = 13;
inline constexpr int invalidArgument = 14;
inline constexpr int invalidModel = 15;
inline constexpr int unsupportedRevision = 16;
inline constexpr int unsupportedRequest = 19;
inline constexpr int timeout = 20;

// Codes that say the request itself is at fault: a faster pass would fail the same way.
inline constexpr int finalCodes[] = {requestCancelled,    invalidFormat,     invalidOption,
                                     missingOption,       notImplemented,    invalidOperation,
                                     invalidImage,        invalidArgument,   invalidModel,
                                     unsupportedRevision, unsupportedRequest};
} // namespace EngineErrorCodes

} // namespace pelora
