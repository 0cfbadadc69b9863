// The subcommands, each defined in its cmd_<family>.cpp and listed in the
// table of main.cpp: run(argc, argv) gets the arguments after `zeqcv`
// (argv[0] is the subcommand), demo(Demo&) adds the family's step to
// `zeqcv demo`.
#ifndef ZEQCV_COMMANDS_H
#define ZEQCV_COMMANDS_H

#include "tool.h"

namespace tool {

int runDemo(int argc, char** argv);                                    // cmd_demo.cpp
int runVersion(int argc, char** argv);                                 // main.cpp
int runDiff(int argc, char** argv);                                    // cmd_arith.cpp
void demoDiff(Demo& demo);
int runAccumulate(int argc, char** argv);                              // cmd_arith.cpp
void demoAccumulate(Demo& demo);
int runStats(int argc, char** argv);                                   // cmd_stats.cpp
void demoStats(Demo& demo);
int runGradient(int argc, char** argv);                                // cmd_edges.cpp
void demoGradient(Demo& demo);
int runEdges(int argc, char** argv);                                   // cmd_edges.cpp
void demoEdges(Demo& demo);
int runSpectrum(int argc, char** argv);                                // cmd_spectrum.cpp
void demoSpectrum(Demo& demo);
int runPyramid(int argc, char** argv);                                 // cmd_pyramid.cpp
void demoPyramid(Demo& demo);
int runDistance(int argc, char** argv);                                // cmd_distance.cpp
void demoDistance(Demo& demo);
int runFill(int argc, char** argv);                                    // cmd_fill.cpp
void demoFill(Demo& demo);
int runMorph(int argc, char** argv);                                   // cmd_morph.cpp
void demoMorph(Demo& demo);
int runMotion(int argc, char** argv);                                  // cmd_motion.cpp
void demoMotion(Demo& demo);
int runSampleLine(int argc, char** argv);                              // cmd_sampleline.cpp
void demoSampleLine(Demo& demo);
int runMatch(int argc, char** argv);                                   // cmd_match.cpp
void demoMatch(Demo& demo);

}  // namespace tool

#endif  // ZEQCV_COMMANDS_H
