/// Two small data files, one of each format version, written by hand. Every kind of node and value that
/// the version knows is in them.
#pragma once

namespace senmark_test {

/// Version 2, SMPTE at 30 frames per second.
///
/// Outline: "arm" (group of "length" number, "label" string, "offset" array, "present" boolean, "angle"
/// dynamic number, "position" dynamic array of 2, "note" dynamic string, "unused" dynamic without samples)
/// and "version" (static string).
/// Sets: "a1" at frames 0, 10, 20, 30; "p1" at frames 5, 15, 25; "n1" at 2 s and 3 s; "e1" is empty.
inline constexpr char kSmallVersion2[] = R"({"version":"TDJSON2.0.0","creator":"by hand",
"dynamicSamplesPresentB":true,
"dynamicDataInfo":{"useTimecodeB":true,
 "timecodeInfo":{"frameRate":{"value":30,"scale":1},"dropFrame":false},
 "videoSyncTimeList":[{"fileName":"a.mov","timeString":"00:00:01:00"},{"fileName":"b.mov","frameNumber":12}]},
"dataOutline":[
 {"objectType":"dataGroup","displayName":"Arm","matchName":"arm","children":[
  {"objectType":"dataStatic","displayName":"Length","matchName":"length","dataType":{"type":"number",
   "numberStringProperties":{"pattern":{"isSigned":false,"digitsInteger":2,"digitsDecimal":1},
   "range":{"occurring":{"min":0,"max":50},"legal":{"min":-1.5,"max":99.5}}}},"value":42.5},
  {"objectType":"dataStatic","displayName":"Label","matchName":"label","dataType":{"type":"string",
   "paddedStringProperties":{"maxLen":8,"maxDigitsInStrLength":1,"eventMarkerB":true}},"value":"left  "},
  {"objectType":"dataStatic","displayName":"Offset","matchName":"offset","dataType":{"type":"numberArray",
   "numberArrayProperties":{"pattern":{"isSigned":true,"digitsInteger":1,"digitsDecimal":2},"arraySize":3,
   "arrayDisplayNames":["X","Y"],"isPoint":true,
   "arrayRanges":{"ranges":[{"occurring":{"min":1,"max":2},"legal":{"min":0,"max":3}}]}}},"value":[1,-2.5,0.25]},
  {"objectType":"dataStatic","displayName":"Present","matchName":"present","dataType":{"type":"boolean"},"value":true},
  {"objectType":"dataDynamic","displayName":"Angle","matchName":"angle","dataType":{"type":"numberString",
   "numberStringProperties":{"pattern":{"isSigned":true,"digitsInteger":2,"digitsDecimal":1},
   "range":{"occuring":{"min":-2.5,"max":99.5},"legal":{"min":-99.5,"max":99.5}}}},
   "sampleSetID":"a1","interpolation":"linear","hasExpectedFrequencyB":true,"sampleCount":4,
   "expectedMaxInterSampleDuration":"00:00:00:10"},
  {"objectType":"dataDynamic","displayName":"Position","matchName":"position","dataType":{"type":"numberStringArray",
   "numberArrayProperties":{"pattern":{"isSigned":false,"digitsInteger":1,"digitsDecimal":2},"arraySize":2,
   "arrayDisplayNames":["X","Y"],
   "arrayRanges":{"ranges":[{"occurring":{"min":0,"max":9},"legal":{"min":0,"max":9}}]}}},
   "sampleSetID":"p1","interpolation":"hold","hasExpectedFrequecyB":false,"sampleCount":3},
  {"objectType":"dataDynamic","displayName":"Note","matchName":"note","dataType":{"type":"paddedString",
   "paddedStringProperties":{"maxLen":6,"maxDigitsInStrLength":1,"eventMarkerB":true}},
   "sampleSetID":"n1","interpolation":"hold","hasExpectedFrequencyB":false,"sampleCount":2},
  {"objectType":"dataDynamic","displayName":"Unused","matchName":"unused","dataType":{"type":"numberString",
   "numberStringProperties":{"pattern":{"isSigned":false,"digitsInteger":1,"digitsDecimal":0},
   "range":{"occurring":{"min":0,"max":0},"legal":{"min":0,"max":0}}}},
   "sampleSetID":"e1","interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":0}]},
 {"objectType":"dataStatic","displayName":"Version","matchName":"version","dataType":{"type":"string",
  "paddedStringProperties":{"maxLen":3,"maxDigitsInStrLength":1,"eventMarkerB":false}},"value":"1.0"}],
"dataDynamicSamples":[
 {"sampleSetID":"a1","samples":[
  {"time":"00:00:00:00","value":"+01.5"},
  {"time":"00:00:00:10","value":"-02.5"},
  {"time":"00:00:00:20","value":"+10.0"},
  {"time":"00:00:01:00","value":"+99.5"}]},
 {"sampleSetID":"n1","samples":[
  {"time":"00:00:02:00","value":{"length":"3","str":"a b   "}},
  {"time":"00:00:03:00","value":{"length":"0","str":"      "}}]},
 {"sampleSetID":"p1","samples":[
  {"time":"00:00:00:05","value":["1.25","0.50"]},
  {"time":"00:00:00:15","value":["2.00","3.75"]},
  {"time":"00:00:00:25","value":["9.50","0.25"]}]}]}
)";

/// Version 1, UTC with milliseconds, the samples before the outline.
///
/// Outline: "speed" (static number text), "title" (static padded text), "axes" (static array of texts),
/// "level" (dynamic number), "event" (dynamic text), "track" (dynamic array of 2).
/// Sets: "lv" and "tr" at 0, 1.5 and 3.25 s from 2020-02-28T23:59:58Z; "ev" at 1 s.
inline constexpr char kSmallVersion1[] = R"({"creator":"by hand, too","version":"anything",
"useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true},
"videoSyncTimeList":[{"fileName":"c.mov","timeString":"2020-02-28T23:59:58.000Z"}],
"dataDynamicSamples":[
 {"sampleSetID":"lv","samples":[
  {"value":"12","time":"2020-02-28T23:59:58.000Z"},
  {"value":"07","time":"2020-02-28T23:59:59.500Z"},
  {"value":"99","time":"2020-02-29T00:00:01.250Z"}]},
 {"sampleSetID":"ev","samples":[
  {"time":"2020-02-28T23:59:59.000Z","value":{"length":8,"str":"a\"bcd\""}}]},
 {"sampleSetID":"tr","samples":[
  {"time":"2020-02-28T23:59:58.000Z","value":["+1.5","-0.5"]},
  {"time":"2020-02-28T23:59:59.500Z","value":["+2.5","-1.5"]},
  {"time":"2020-02-29T00:00:01.250Z","value":["-3.5","+2.5"]}]}],
"dataOutline":[
 {"objectType":"dataStatic","displayName":"Speed","matchName":"speed","dataType":{"type":"numberString",
  "numberStringProperties":{"pattern":{"isSigned":false,"digitsInteger":2,"digitsDecimal":1},
  "range":{"occurring":{"min":0,"max":50},"legal":{"min":0,"max":99}}}},"value":"42.5"},
 {"objectType":"dataStatic","displayName":"Title","matchName":"title","dataType":{"type":"paddedString",
  "paddedStringProperties":{"maxLen":5,"maxDigitsInStrLength":1,"eventMarkerB":false}},
  "value":{"length":3,"str":"abc  "}},
 {"objectType":"dataStatic","displayName":"Axes","matchName":"axes","dataType":{"type":"numberArray",
  "numberArrayProperties":{"pattern":{"isSigned":true,"digitsInteger":1,"digitsDecimal":1},"arraySize":2,
  "arrayDisplayNames":["A"],"arrayRanges":{"ranges":[{"occurring":{"min":0,"max":1},"legal":{"min":0,"max":1}}]}}},
  "value":["+1.5","-2"]},
 {"objectType":"dataDynamic","displayName":"Level","matchName":"level","dataType":{"type":"numberString",
  "numberStringProperties":{"pattern":{"isSigned":false,"digitsInteger":2,"digitsDecimal":0},
  "range":{"occurring":{"min":7,"max":99},"legal":{"min":0,"max":99}}}},
  "sampleSetID":"lv","interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":3},
 {"objectType":"dataDynamic","displayName":"Event","matchName":"event","dataType":{"type":"paddedString",
  "paddedStringProperties":{"maxLen":8,"maxDigitsInStrLength":1,"eventMarkerB":true}},
  "sampleSetID":"ev","interpolation":"hold","hasExpectedFrequencyB":false,"sampleCount":1},
 {"objectType":"dataDynamic","displayName":"Track","matchName":"track","dataType":{"type":"numberArray",
  "numberArrayProperties":{"pattern":{"isSigned":true,"digitsInteger":1,"digitsDecimal":1},"arraySize":2,
  "arrayDisplayNames":["X","Y"],"isPoint":false,
  "arrayRanges":{"ranges":[{"occurring":{"min":0,"max":9},"legal":{"min":0,"max":9}}]}}},
  "sampleSetID":"tr","interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":3}]}
)";

}  // namespace senmark_test
