#include "fuzz/page/well_formed.h"

#include <set>
#include <string_view>
#include <vector>

#include "fuzz/kit/fuzz_target.h"

namespace fuzz {

namespace {

/// The value of an attribute of a tag; empty for none.
std::string attribute(std::string_view tag, const std::string& name) {
  const std::string begin = ' ' + name + "=\"";
  const size_t at = tag.find(begin);
  if (at == std::string_view::npos) return {};
  const size_t from = at + begin.size();
  return std::string(tag.substr(from, tag.find('"', from) - from));
}

class Tags {
 public:
  void run(std::string_view html) {
    for (size_t at = html.find('<'); at != std::string_view::npos; at = html.find('<', at)) {
      const size_t end = html.find('>', at);
      require(end != std::string_view::npos, "a tag ends");
      take(html.substr(at + 1, end - at - 1));
      at = end;
    }
    require(m_open.empty(), "every element ends");
    for (const std::string& target : m_targets)
      require(m_ids.count(target) == 1, "every link has its target");
  }

 private:
  void take(std::string_view tag) {
    if (tag.starts_with('!') || tag.ends_with('/')) return note(tag);
    const std::string name(tag.substr(0, tag.find(' ')));
    if (name.starts_with('/')) {
      require(!m_open.empty() && m_open.back() == name.substr(1), "elements end in their order");
      m_open.pop_back();
      return;
    }
    require(name != "script", "no page has a script");
    if (name != "meta") m_open.push_back(name);
    note(tag);
  }

  void note(std::string_view tag) {
    if (const std::string id = attribute(tag, "id"); !id.empty())
      require(m_ids.insert(id).second, "an id stands once");
    const std::string target = attribute(tag, "href");
    if (target.empty()) return;
    require(target.starts_with('#'), "links lead to the page itself");
    m_targets.insert(target.substr(1));
  }

  std::vector<std::string> m_open;
  std::set<std::string> m_ids, m_targets;
};

}  // namespace

void requireWellFormed(const std::string& html) {
  for (const char c : html)
    require(static_cast<unsigned char>(c) >= 0x20 || c == '\n', "there is no control character");
  Tags().run(html);
}

}  // namespace fuzz
