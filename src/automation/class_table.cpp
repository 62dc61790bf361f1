#include "automation/class_table.h"

#include "model/text.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace qx::automation {

ClassTable::ClassTable(std::string_view name, std::string_view help, std::vector<Member> members,
                       std::vector<EventDescription> events)
    : name_(name), help_(help), members_(std::move(members)), events_(std::move(events)) {
  DispatchId next = 1;
  for (std::size_t i = 0; i < members_.size(); ++i) {
    MemberDescription& member = members_[i].description;
    if (member.id == nextId) member.id = next++;
    if (!names_.emplace(lowerCase(member.name), i).second || !ids_.emplace(member.id, i).second)
      throw std::logic_error("two members of " + std::string(name) + " are called " +
                             std::string(member.name));
  }
}

const Member* ClassTable::find(std::string_view member) const {
  const auto found = names_.find(lowerCase(member));
  return found == names_.end() ? nullptr : &members_[found->second];
}

const Member* ClassTable::find(DispatchId id) const {
  const auto found = ids_.find(id);
  return found == ids_.end() ? nullptr : &members_[found->second];
}

std::optional<DispatchId> parameterIndex(const MemberDescription& member, std::string_view name) {
  const auto& all = member.parameters;
  const auto found = std::ranges::find_if(all, [folded = lowerCase(name)](const ParameterDescription& each) {
    return lowerCase(each.name) == folded;
  });
  if (found == all.end()) return std::nullopt;
  return static_cast<DispatchId>(found - all.begin());
}

} // namespace qx::automation
