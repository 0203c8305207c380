// A shared object that could be a module's but for its missing entry: what has its name is a function of C++.
extern "C" __attribute__((visibility("default"))) int SomethingElse();

int SomethingElse() {
  return 1;
}

namespace bare {
__attribute__((visibility("default"))) void InitializePlugin(char const* identifier);

void InitializePlugin(char const* /*identifier*/) {}
}  // namespace bare
