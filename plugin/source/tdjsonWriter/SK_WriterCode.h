/// The codes of the writer's own failures. A message does not belong to them: whoever reports one to a host
/// adds it.
#pragma once

#include "senmark/SK_ErrorCode.h"

namespace SK_PLUGIN {

using ns_sensor::eErrorCode;

inline constexpr eErrorCode kTooManyValues{48};     ///< a static number array with more than 3 values
inline constexpr eErrorCode kBadInterpolation{53};  ///< neither linear nor hold
inline constexpr eErrorCode kWriterUnknownException{1023};
inline constexpr eErrorCode kWriterNoMemory{1034};
inline constexpr eErrorCode kRootPathMissing{1505};        ///< null or empty
inline constexpr eErrorCode kOutlineEmpty{2000};           ///< nothing is left of it
inline constexpr eErrorCode kDynamicNodeUnusable{2001};    ///< null, or a sample of it failed
inline constexpr eErrorCode kStaticNodeMissing{2002};      ///< null
inline constexpr eErrorCode kGroupMissing{2003};           ///< null
inline constexpr eErrorCode kRollBackFailed{2004};         ///< the file cannot be cut back after a failed set
inline constexpr eErrorCode kNoRoot{2005};                 ///< none under the converter key
inline constexpr eErrorCode kHalfAutomaticPattern{2006};   ///< one count is the automatic mark, the other not
inline constexpr eErrorCode kMixedOccurringRange{2007};    ///< automatic and explicit bounds together
inline constexpr eErrorCode kMixedLegalRange{2008};        ///< automatic and explicit bounds together
inline constexpr eErrorCode kEmptySampleTime{2009};        ///< neither a time code nor a calendar time
inline constexpr eErrorCode kStaticNamesMismatch{2011};    ///< display names given, but not one per value
inline constexpr eErrorCode kStaticRangesMismatch{2012};   ///< ranges given, but not one per value
inline constexpr eErrorCode kHalfEmptySample{2014};        ///< one of time and value is empty
inline constexpr eErrorCode kEmptySyncTime{2015};          ///< neither a text nor a frame number
inline constexpr eErrorCode kForeignObject{2016};          ///< not of the class that its type claims
inline constexpr eErrorCode kBadArrayCount{2017};          ///< 0, above 3, or not the count of values
inline constexpr eErrorCode kDynamicRangesMismatch{2018};  ///< ranges given, but not one per element
inline constexpr eErrorCode kDynamicNamesMismatch{2019};   ///< display names given, but not one per element
inline constexpr eErrorCode kUnknownChildKind{2020};
inline constexpr eErrorCode kNoChildren{2021};  ///< of the root
inline constexpr eErrorCode kWriterBadMatchName{2022};
inline constexpr eErrorCode kUnknownNodeType{2023};   ///< to the serializer
inline constexpr eErrorCode kNoTimeInfo{2024};        ///< of a root that promises samples
inline constexpr eErrorCode kNoTextForm{2026};        ///< a type or interpolation without one
inline constexpr eErrorCode kNoPlaceForResult{2027};  ///< a null out pointer
inline constexpr eErrorCode kNoDynamicSamples{2028};  ///< the root has no time base
inline constexpr eErrorCode kVersionTooHigh{2029};
inline constexpr eErrorCode kVersionUnknown{2030};  ///< other than 1

}  // namespace SK_PLUGIN
