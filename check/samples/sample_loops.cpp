#include "check/samples/sample_loops.h"

namespace velmor::check {

const SampleLoops& sampleLoops() {
  for (const SampleLoops& loops : vectorLoops())
    if (loops.runs_here) return loops;
  return kPlainLoops;
}

}  // namespace velmor::check
