#include "tests/module/mac/engine_door.h"

#include "module/burn/burn_engine.h"

#define DOOR extern "C" __attribute__((visibility("default")))

DOOR void velmorTestListRecorders(HWND combo);
void velmorTestListRecorders(HWND combo) {
  CDBurn_PopulateComboBoxWithBurners(combo);
}

DOOR void velmorTestBurnImage(void* device, int track_count, const int* track_byte_offsets,
                              const char* path, bool eject, bool test_burn);
void velmorTestBurnImage(void* device, int track_count, const int* track_byte_offsets,
                         const char* path, bool eject, bool test_burn) {
  YDK_FileRead image(path);
  CDBurn_Run(reinterpret_cast<long>(device), track_count, track_byte_offsets, &image, eject,
             test_burn);
}
