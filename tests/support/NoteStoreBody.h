#ifndef YH_TESTS_SUPPORT_NOTESTOREBODY_H
#define YH_TESTS_SUPPORT_NOTESTOREBODY_H

#include <string>

namespace yhtest {

// The 14 bytes before a note-store body's text, skipped unread by the reader;
// the end mark (0x1A) among them does not end the text.
extern const std::string kNoteStoreHeader;
// The end mark and what the device writes after the text.
extern const std::string kNoteStoreTrailer;

// The bytes gzip-compressed, with gzip's own header and trailer.
std::string Gzip(const std::string& bytes);

// An SQL blob literal, X'..', of the bytes.
std::string SqlBlob(const std::string& bytes);

// A note-store body as the device keeps it: gzip of header, text, end mark
// and more.
std::string NoteStoreBody(const std::string& text);

}  // namespace yhtest

#endif
