// Plain text to the process's standard streams, past every buffer.
#pragma once

#include <string_view>

namespace vardento {

// All of the text, or as much as the stream takes; a stream that is closed takes nothing.
void WriteToStandardOutput(std::string_view text);
void WriteToStandardError(std::string_view text);

}  // namespace vardento
