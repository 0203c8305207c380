// A shared object that could be a module's but for its missing entry.
extern "C" __attribute__((visibility("default"))) int SomethingElse();

int SomethingElse() {
  return 1;
}
