// Text and numbers on their way into the page.
#pragma once

#include <string>
#include <string_view>

namespace velmor::page {

/// `text`, which is UTF-8, as a part of a page's text or of an attribute in quotes.
std::string escaped(std::string_view text);

/// The same for a text that somebody else has written, in whatever direction it runs: what stands
/// around it is not turned along.
std::string foreign(std::string_view text);

/// `value` with `digits` digits behind the point, and a true minus sign.
std::string decimal(double value, int digits);
/// With a sign before every number but 0.
std::string signedDecimal(double value, int digits);

/// A share of `whole`, 0 to 100, for a style; `whole` is above 0.
std::string percent(double part, double whole);

}  // namespace velmor::page
