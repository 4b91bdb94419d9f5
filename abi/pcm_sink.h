// The host's abstract render target. The order of the virtual operations is the binary interface.
//
// The host calls from its render thread, one call at a time, and owns the object: it ends it with
// `delete`.
#pragma once

class MIDI_eventlist;
struct PCM_source_peaktransfer_t;

/// Call codes of `PCM_sink::Extended` that a sink may answer.
inline constexpr int kSinkRenderFinished = 0x80001;  ///< p1: parent window or null
inline constexpr int kSinkQueryFormat = 0x80002;     ///< p1: int* sample rate, p2: int* channels
inline constexpr int kSinkQueryBitDepth = 0x80005;   ///< p1: int* bits

class PCM_sink {
 public:
  PCM_sink() = default;
  PCM_sink(const PCM_sink&) = delete;
  PCM_sink& operator=(const PCM_sink&) = delete;
  virtual ~PCM_sink() = default;

  /// Writes a description of at most `buflen` bytes, its terminating zero included.
  virtual void GetOutputInfoString(char* buf, int buflen) = 0;
  /// Project time in seconds at which the render starts.
  virtual double GetStartTime() { return m_st; }
  virtual void SetStartTime(double st) { m_st = st; }
  virtual const char* GetFileName() = 0;
  virtual int GetNumChannels() = 0;
  virtual double GetLength() = 0;  ///< seconds
  virtual long long GetFileSize() = 0;
  virtual void WriteMIDI(MIDI_eventlist* events, int len, double samplerate) = 0;
  /// Frame i of channel c is `samples[c][offset + i * spacing]`; `len` frames; full scale is 1.0.
  virtual void WriteDoubles(double** samples, int len, int nch, int offset, int spacing) = 0;
  virtual int WantMIDI() { return 0; }
  virtual int GetLastSecondPeaks(int size, double* buf) = 0;
  virtual void GetPeakInfo(PCM_source_peaktransfer_t* /*block*/) {}
  virtual int Extended(int call, void* p1, void* p2, void* p3) = 0;

 protected:
  double m_st = 0.0;
};
static_assert(sizeof(PCM_sink) == 16);
