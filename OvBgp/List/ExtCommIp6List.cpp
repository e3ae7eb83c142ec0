#include "OvBgp/List/ExtCommIp6List.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "Kiv/Assert.h"
#include "OvBgp/List/Private/ExtCommSerialize.h"
#include "OvBgp/List/Private/ListText.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {

KIV_OBJECT_DEFINE(ExtCommIp6List)

ExtCommIp6List::Ptr extCommIp6ListFactory() { return Dorn::notifyingObject<ExtCommIp6List>(); }

// Only this kind of list checks that it is sorted. The search in the base does not.
ExtCommIp6::PtrConst ExtCommIp6List::comm(const ExtCommIp6Content& content) const {
  KIV_ASSERT(commVectorSorted(), "commVectorSorted", "OvBgp/OvBgpCommunityListImpl");
  return ExtCommListBase::lookupExtComm(content);
}

// The buffer takes the text of about five members; longer texts continue on the heap.
Kiv::String ExtCommIp6List::commsStringForm() const {
  ExtCommIp6::StrepFormat format;
  format.strepFormatClassificationIs(true);
  OvFmt::StackBackedBuffer<256> text;
  appendPolicyText(text, format);
  return text.str();
}

// The transitive members were counted when the list was interned, so no member is read here.
U32 ExtCommIp6List::serializableCommunities(bool includeNonTransitive) const {
  return includeNonTransitive ? totalCommunities() : totalTransitiveCommunities();
}

Kiv::String ExtCommIp6List::serialize(bool includeNonTransitive) const {
  return serializeExtComms<ExtCommIp6Family>(
      *this, serializableCommunities(includeNonTransitive),
      [includeNonTransitive](const ExtCommIp6::PtrConst& comm) {
        return includeNonTransitive || comm->getContent().transitiveFlag();
      });
}

bool ExtCommIp6List::fitsAttribute(bool includeNonTransitive) const {
  if (!includeNonTransitive && !everDeduped()) return false;
  return serializableCommunities(includeNonTransitive) <= maxSerializableComms;
}

std::ostream& operator<<(std::ostream& out, const ExtCommIp6List* list) {
  return writeListOrNull(out, list);
}

std::ostream& operator<<(std::ostream& out, const ExtCommIp6List& list) { return out << &list; }

}  // namespace Routing::Bgp
