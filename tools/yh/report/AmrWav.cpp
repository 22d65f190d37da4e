#include "AmrWav.h"

#include <opencore-amrnb/interf_dec.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace yh {
namespace {

const char kMagic[] = "#!AMR\n";
constexpr int kSampleRate = 8000;
constexpr size_t kFrameSamples = 160;
// Bytes of speech after each frame's header byte, by frame type (3GPP TS
// 26.101): the eight rates, comfort noise, then types without speech.
constexpr size_t kFrameBytes[16] = {12, 13, 15, 17, 19, 20, 26, 31, 5, 0, 0, 0, 0, 0, 0, 0};

struct Decoder {
  void operator()(void* state) const { Decoder_Interface_exit(state); }
};

void Put16(std::string& out, uint32_t value) {
  out += static_cast<char>(value & 0xFF);
  out += static_cast<char>((value >> 8) & 0xFF);
}

void Put32(std::string& out, uint32_t value) {
  Put16(out, value & 0xFFFF);
  Put16(out, value >> 16);
}

std::string Wav(const std::vector<int16_t>& samples) {
  const uint32_t bytes = static_cast<uint32_t>(samples.size() * 2);
  std::string wav = "RIFF";
  Put32(wav, 36 + bytes);
  wav += "WAVEfmt ";
  Put32(wav, 16);
  Put16(wav, 1);  // PCM
  Put16(wav, 1);  // mono
  Put32(wav, kSampleRate);
  Put32(wav, kSampleRate * 2);
  Put16(wav, 2);
  Put16(wav, 16);
  wav += "data";
  Put32(wav, bytes);
  for (int16_t sample : samples) Put16(wav, static_cast<uint16_t>(sample));
  return wav;
}

}  // namespace

std::string AmrToWav(const std::string& amr) {
  const size_t magic = sizeof kMagic - 1;
  if (amr.compare(0, magic, kMagic) != 0) return "";
  std::unique_ptr<void, Decoder> state(Decoder_Interface_init());
  if (!state) return "";
  std::vector<int16_t> samples;
  short frame[kFrameSamples];
  for (size_t at = magic; at < amr.size();) {
    const size_t size = 1 + kFrameBytes[(static_cast<unsigned char>(amr[at]) >> 3) & 0x0F];
    if (at + size > amr.size()) break;
    Decoder_Interface_Decode(state.get(), reinterpret_cast<const unsigned char*>(amr.data() + at), frame, 0);
    samples.insert(samples.end(), frame, frame + kFrameSamples);
    at += size;
  }
  if (samples.empty()) return "";
  return Wav(samples);
}

}  // namespace yh
