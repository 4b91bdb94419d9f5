#include "module/sink/sample_conversion_x86_64.h"

std::span<const VectorForm> vectorForms() {
  static const VectorForm kForms[] = {{"Avx2", convertFramesAvx2, processorHasAvx2()},
                                      {"Sse2", convertFramesSse2, true}};
  return kForms;
}

bool vectorFormsAreExact() {
  return roundsToNearest();
}
