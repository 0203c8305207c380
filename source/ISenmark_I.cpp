#include "ISenmark_I.h"

#include "SK_Ladder.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::RunAtBorder;

void ISenmark_I::openFile(ISensorFileHandler** handler, char const* path, char const* outputPath,
                          void* clientErrorObject) {
  RunAtBorder(clientErrorObject, [&] { OpenFile(handler, path, outputPath); });
}

void ISenmark_I::closeFile(ISensorFileHandler** handler, void* clientErrorObject) {
  RunAtBorder(clientErrorObject, [&] { CloseFile(handler); });
}

void ISenmark_I::createTdjsonStream(ITdjsonStream** stream, char const* path, unsigned char validate,
                                    void* clientErrorObject) {
  RunAtBorder(clientErrorObject, [&] { CreateTdjsonStream(stream, path, validate != 0); });
}

void ISenmark_I::destroyTdjsonStream(ITdjsonStream** stream, void* clientErrorObject) {
  RunAtBorder(clientErrorObject, [&] { DestroyTdjsonStream(stream); });
}

}  // namespace ns_sensor
