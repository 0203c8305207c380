// The code of a module that cannot be loaded: nobody provides what it calls.
extern "C" void NobodyProvidesThis();
extern "C" __attribute__((visibility("default"))) void InitializePlugin(char const*, void*, void*, void*);

void InitializePlugin(char const*, void*, void*, void*) {
  NobodyProvidesThis();
}
