// Placeholder for the skeleton; replaced by the module's static initialisers.
extern "C" __attribute__((visibility("default"))) int QUELM_dllMain();
int QUELM_dllMain() {
  return 1;
}
