#include "tools/bgp-communities/mrt/MrtReader.h"

namespace CommTool {

// The position is updated before anything is checked, so that errors name the failed record.
const MrtRecord* MrtReader::next() {
  const Octets header = input_.take(headerLength);
  if (header.empty() && input_.damage().empty()) {
    return nullptr;
  }
  ++record_.number;
  record_.offset = nextOffset_;
  if (header.size() < headerLength) {
    cutShort("record header", headerLength, header.size());
  }
  OctetReader reader(header, "record header");
  record_.seconds = reader.u32();
  record_.type = static_cast<MrtType>(reader.u16());
  record_.subtype = reader.u16();
  const U32 length = reader.u32();
  if (length > maxLength) tooLong(length);
  // The header is not needed any more: take() may overwrite it.
  record_.body = input_.take(length);
  if (record_.body.size() < length) {
    cutShort("record body", length, record_.body.size());
  }
  nextOffset_ += headerLength + length;
  return &record_;
}

// A file that is not MRT at all is nearly always noticed here, in its first record.
void MrtReader::tooLong(U32 length) const {
  std::string text =
      "record length " + std::to_string(length) + " is more than " + std::to_string(maxLength);
  if (record_.number == 1) text += "; not an MRT file?";
  throw Malformed(text);
}

// The stream ended within the record. If the compression is damaged, that is the actual reason.
void MrtReader::cutShort(const char* what, std::size_t wanted, std::size_t got) const {
  std::string text = std::string(what) + " cut short: " + std::to_string(got) + " of " +
                     std::to_string(wanted) + " octets";
  if (!input_.damage().empty()) {
    text += " (" + input_.damage() + ")";
  }
  throw Malformed(text);
}

}  // namespace CommTool
