// Plain text to the process's standard streams, past every buffer.
#pragma once

#include <string>
#include <string_view>

namespace vardento {

// Puts the null device in the place of each standard stream that the parent process has closed, so
// that no file of the user, opened later, becomes one. Call it before anything is opened.
void HoldStandardStreams();

// All of the text, or as much as the stream takes; a stream that is closed takes nothing.
void WriteToStandardOutput(std::string_view text);
void WriteToStandardError(std::string_view text);

// The text with a blank for each control character: texts may quote a user's file, and a terminal
// must not obey what stands there.
std::string WithoutControls(std::string_view text);

}  // namespace vardento
