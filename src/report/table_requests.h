// Requests for Tables during the run, and the text of one request.
#pragma once

#include <string_view>

#include "report/report_context.h"

namespace vardento {

// Runs every "1" of TABLES=, then the lines of TFILE=.
void RunRequestedTables(ReportContext& context);
// Fills the request from one line of up to 80 characters.
void ParseTableRequest(TableRequest& request, std::string_view line);

}  // namespace vardento
