/// A writer that writes nothing and keeps every call of the native converters as a line of text.
///
/// A suite that is linked with it has it in place of the library's own.
#pragma once

#include <string>

namespace senmark_test {

/// The calls since the last one, in their order:
///
///     root "out.tdjson"                  without a time base
///     creator "com.example"
///     number matchName1 "name" 1.5       with properties that are taken from the value, made and added in one step
///     string matchName2 "name" "text"    the same
///     bool matchName3 "name" true
///     group matchName4 "name"
///     add matchName1 to root
///     commit
///     remove
///
/// Anything else that a converter can ask for fails the test. Bytes below a blank are shown as \xNN.
std::string TakeWriterCalls();

/// Objects that the writer has made and that are still held.
int CountWriterObjects();

/// Whether calls are kept; a test over millions of nodes keeps them out. True at first.
void KeepWriterCalls(bool keep);

/// What a commit says. True at first.
void LetCommitSay(bool result);

}  // namespace senmark_test
