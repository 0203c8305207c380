/// The border of the manager: runs each operation and turns what it throws into a call of the host's
/// error proc.
#pragma once

#include "senmark/ISenmark.h"

namespace ns_sensor {

class ISenmark_I : public virtual ISenmark {
 public:
  void openFile(ISensorFileHandler** handler, char const* path, char const* outputPath,
                void* clientErrorObject) override;
  void closeFile(ISensorFileHandler** handler, void* clientErrorObject) override;
  void createTdjsonStream(ITdjsonStream** stream, char const* path, unsigned char validate,
                          void* clientErrorObject) override;
  void destroyTdjsonStream(ITdjsonStream** stream, void* clientErrorObject) override;
};

}  // namespace ns_sensor
