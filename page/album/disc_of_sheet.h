// A checked sheet as a page shows it.
#pragma once

#include "check/report/report.h"
#include "page/album/page_disc.h"

namespace velmor::page {

/// Whatever is wrong with the sheet: what cannot be known is left open.
PageDisc discOfSheet(const check::Report& report);

/// Adds what the checker says of the sheet that `disc` was made from.
void addReport(const check::Report& report, PageDisc& disc);

}  // namespace velmor::page
