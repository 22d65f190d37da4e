#ifndef YH_TOOL_REPORT_AMRWAV_H
#define YH_TOOL_REPORT_AMRWAV_H

#include <string>

namespace yh {

// The sound of an AMR narrow-band file ("#!AMR\n", as voicemail is kept) as
// a WAV file browsers play: 16-bit mono PCM at 8 kHz, decoded with
// opencore-amrnb. "" for anything else (wide-band AMR included); a frame
// cut short ends the sound there.
std::string AmrToWav(const std::string& amr);

}  // namespace yh

#endif
