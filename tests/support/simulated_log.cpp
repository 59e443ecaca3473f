#include "support/simulated_log.h"

namespace zol::testing {

SimulatedLogSize WriteSimulatedLog(const std::string& path, const Project& project,
                                   const SimulatedLogShape& shape) {
  PflHeaderText header = PflHeaderText::For(project);
  header.PerformanceFrequency = shape.frequencyText;
  header.TraceOverhead = shape.lineNineOverhead;
  if (!shape.dateTime.empty()) header.DateTime = shape.dateTime;
  PflWriter writer(path, header, shape.level);
  SimulatedLogger logger(writer, shape.logger);
  RunSimulator run(project, shape.run);
  SimulatedLogSize size;
  pfl::LogRecord probe;
  while (run.Next(probe)) {
    logger.Probe(probe);
    ++size.probes;
  }
  logger.EndRun();
  writer.Finish(shape.trailerOverhead ? std::optional(TrailerLine(*shape.trailerOverhead))
                                      : std::nullopt);
  size.blocks = writer.BlocksWritten();
  size.bytes = writer.BytesWritten();
  return size;
}

}  // namespace zol::testing
