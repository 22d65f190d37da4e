#ifndef YH_TESTS_SUPPORT_NOTEDOCUMENTWRITER_H
#define YH_TESTS_SUPPORT_NOTEDOCUMENTWRITER_H

#include <cstdint>
#include <string>

namespace yhtest {

// Protocol-buffer pieces: a varint, a field's tag, a varint field and a
// length-delimited field.
std::string ProtoVarint(uint64_t value);
std::string ProtoTag(uint32_t number, uint32_t wireType);
std::string ProtoVarintField(uint32_t number, uint64_t value);
std::string ProtoLengthField(uint32_t number, const std::string& bytes);

// A note document shaped as the device writes it: a version, the document
// (its version and the note: the text and one attribute run over it).
std::string NoteDocument(const std::string& text);

// The note document gzip'd, as ZICNOTEDATA.ZDATA holds it.
std::string NoteDocumentBlob(const std::string& text);

}  // namespace yhtest

#endif
