#ifndef YH_RECOVERY_PAYLOAD_H
#define YH_RECOVERY_PAYLOAD_H

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

class FileImage;

// Which b-tree's cells a payload belongs to: a table leaf cell keeps more of
// it on its page than an index cell.
enum class CellKind { TableLeaf, Index };

// How many bytes of a cell's payload stay on its page; the rest goes to the
// overflow chain.
uint32_t LocalPayloadSize(int64_t payloadSize, uint32_t usableSize, CellKind kind);

// The payload of a cell of that kind whose local part starts at page[offset]:
// a view of the page when it fits there, else the local bytes and then the
// overflow chain in the current image, gathered in `storage`. False when the
// local part runs past `limit` or the chain breaks (a page out of range, a
// page met twice, or the chain ends early). A chain that reaches one of
// `damaged` ends there: the payload is then shorter than `payloadSize`.
// `end` receives the offset after the local part (and its overflow pointer).
bool ReadPayload(const FileImage& image, CellKind kind, std::string_view page, size_t offset, size_t limit,
                 int64_t payloadSize, std::string* storage, std::string_view* payload, size_t* end,
                 const std::unordered_set<uint32_t>* damaged = nullptr);

#endif
