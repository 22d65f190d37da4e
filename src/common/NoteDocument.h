#ifndef YH_COMMON_NOTEDOCUMENT_H
#define YH_COMMON_NOTEDOCUMENT_H

#include <cstddef>
#include <string>
#include <string_view>

// The whole text of a note as the note store keeps it (ZICNOTEDATA.ZDATA):
// a gzip'd protocol-buffer document whose field 2 is the document, whose
// field 3 is the note, whose field 2 is the text (UTF-8, kept byte for byte).
// Empty for anything else: damaged gzip, a property list, encrypted bytes,
// a message that is not well formed.
std::string NoteDocumentText(const void* data, size_t size);

// The same walk over an already inflated document.
std::string NoteTextOfDocument(std::string_view document);

#endif
