#include "ddp/check/rules.h"
#include "disc/codes/catalogue_number.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"

namespace velmor::ddp {

using check::Findings;
using check::Severity;

Identifier judgeIdentifier(std::string_view bytes, Findings& findings) {
  const check::Place place{0, 0, kIdentifierFile};
  if (bytes.size() != kIdentifierBytes) {
    findings.add(Severity::kError, "identifier-length", place,
                 "it has " + std::to_string(bytes.size()) + " bytes where 128 belong", kAskAnew,
                 kLevel);
    return {};
  }
  Identifier id = readIdentifier(bytes);
  if (id.level != kLevel)
    findings.add(Severity::kError, "level", place,
                 "it begins with " + disc::inQuotes(id.level) + " where \"DDP 2.00\" belongs",
                 "Ask for a set of DDP 2.00.", kLevel);
  if (id.medium != kMedium)
    findings.add(Severity::kError, "not-a-cd", place,
                 "the medium is " + disc::inQuotes(id.medium) + " where \"CD\" belongs",
                 "Ask for a set of a CD.", kLevel);
  // A UPC is the twelve-digit form of such a number.
  if (id.catalogue.size() == 12 && disc::allDigits(id.catalogue))
    id.catalogue = disc::bareCatalogueNumber(id.catalogue);
  if (!isMasterId(id.master_id))
    findings.add(
        Severity::kWarning, "master-id", place,
        "the master identifier " + disc::inQuotes(id.master_id) + " is not printable ASCII",
        "Ask for the set anew, if its check sums do not say that it is as it was made.", kLevel);
  if (!id.unknown.empty())
    findings.add(Severity::kWarning, "reserved-field", place,
                 "there is " + disc::inQuotes(id.unknown) + " where nothing should be",
                 "Ask for the set anew, if its check sums do not say that it is as it was made.",
                 kLevel);
  return id;
}

}  // namespace velmor::ddp
