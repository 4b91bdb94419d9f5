# What an emulator runs of the tests. It takes ten times as long, so there are two tests of most programs: one with the
# label "quick" for every run, and one with the label "long" of all that an emulator can run.

# An emulated process cannot start another one, and no limit of its memory holds.
set(VELMOR_NOT_EMULATED_plugin_test Import.AProcessWithoutTheProvidersSymbolHasNone)
set(VELMOR_NOT_EMULATED_support_test FileReadDeathTest.TheTurnBeginsWithAWholeFill)
set(VELMOR_NOT_EMULATED_sink_test HostileInput.ABlockWhoseBufferDoesNotFitIntoMemoryIsNotWrittenAndIsReported)

# By program what a quick test leaves out. A program that is not here has none.
set(VELMOR_LONG_conversion_test Forms/*Plain Forms/*Fastest)
set(VELMOR_LONG_plugin_test none)
set(VELMOR_LONG_sink_test
    HostileInput.* OfThePerson/Locale.* Allocations/* Conversion.EveryIntegerAndHalfStep* Images.OneTrackMode*
    CueSheet.TimesAreTruncated* CueSheet.MinutesGoOn* CueSheet.OfAWholeAlbum* CueSheet.ATagBelongs*
    Markers.MoreThanNinetyNine* Markers.AMarkerAtABlockBoundary* Regions.OnlyTheirAudio* Regions.OneThatEndsExactly*)
set(VELMOR_LONG_model_test none)
set(VELMOR_LONG_mac_driven_test none)
set(VELMOR_LONG_mac_hosted_burn_test none)
set(quick_environment VELMOR_MODEL_SEEDS=20)

add_custom_target(quick_tests)

# velmor_run_test() of testing.cmake, in the variables of which it is called.
macro(velmor_run_emulated_test)
  math(EXPR timeout "${R_TIMEOUT} * 4")
  set(without ${R_WITHOUT} ${VELMOR_NOT_EMULATED_${R_PROGRAM}})
  if(VELMOR_LONG_${R_PROGRAM})
    set(quickly_without ${without} ${VELMOR_LONG_${R_PROGRAM}})
    list(JOIN quickly_without ":" cases)
    add_test(NAME ${R_NAME}_quick COMMAND ${R_PROGRAM} ${R_ARGS} --gtest_filter=-${cases})
    set_tests_properties(${R_NAME}_quick PROPERTIES TIMEOUT ${timeout} LABELS quick
      ENVIRONMENT "${R_ENVIRONMENT};${quick_environment}")
    add_dependencies(quick_tests ${R_PROGRAM})
  endif()
  list(JOIN without ":" cases)
  if(cases)
    list(APPEND R_ARGS --gtest_filter=-${cases})
  endif()
  add_test(NAME ${R_NAME} COMMAND ${R_PROGRAM} ${R_ARGS})
  set_tests_properties(${R_NAME} PROPERTIES TIMEOUT ${timeout} LABELS long ENVIRONMENT "${R_ENVIRONMENT}")
endmacro()
