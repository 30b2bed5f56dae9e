#include "host/engine_choice.h"

#include "engines/calc/calc_engine.h"
#include "engines/memory/memory_engine.h"
#include "host/windows_path.h"

namespace qv::devhost {

std::unique_ptr<Engine> MakeEngine(const Options& options) {
  std::unique_ptr<Engine> engine;
  if (options.engine == EngineKind::kCalc) {
    engine = std::make_unique<CalcEngine>(options.calcPort, options.host);
  } else {
    engine = std::make_unique<MemoryEngine>(options.host);
  }
  if (!options.workbook.empty()) engine->Open(ToWindowsPath(options.workbook));
  return engine;
}

}  // namespace qv::devhost
