// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// The argument vectors of the step programs for the case of `ControllerRun`, whole and as they
/// stand. The front end has link 0, so that each program, being alone, has link 1. The directory of
/// the run is "@/", that of the grid "@/Grid_Output/": hence the doubled slashes. The offset is the
/// negated corner of the domain, (-10, -20.5, 3).
namespace Testing::Expected {

inline const std::string kGridHead
    = "-3D -d -so=@/Grid_Output//TreeGen.out -se=@/Grid_Output//TreeGen.err -linkid=1 ";
inline const std::string kWholeGrid
    = "-i=@/Grid_Output/wing.treegen -f=VRK.grid.dat -tx=10 -ty=20.5 -tz=-3"
      " -l2g=@/Grid_Output//VRK.grd.L2G -p=@/Solver_Input//ParmFlw.h";
inline const std::string kOctree = kGridHead + kWholeGrid + " -sbi=body_fitter_input.dat";
inline const std::string kOctreeWithoutFitter = kGridHead + kWholeGrid;
inline const std::string kAdaptedOctree = kGridHead
    + "-i=@/Grid_Output/wing.treegen-adapted -f=VRK.grid.dat -tx=10 -ty=20.5 -tz=-3"
      " -l2g=@/Grid_Output//VRK.grd.L2G -p=@/Solver_Input//ParmFlw.h"
      " -sbi=body_fitter_input.dat";
inline const std::string kBodyFitter = kGridHead
    + "-f=VRK.grid.dat -tx=10 -ty=20.5 -tz=-3 -l2g=@/Grid_Output//VRK.grd.L2G"
      " -p=@/Solver_Input//ParmFlw.h -ob=body_fitter_input.dat -soa -sea";
inline const std::string kValidator = kGridHead + "-ov=VRK.grid.dat -soa -sea";
inline const std::string kMetrics = kGridHead
    + "-f=VRK.grid.dat -tx=10 -ty=20.5 -tz=-3 -osm=@/Grid_Output//wing_body.Grd -soa -sea";

/// Of a hybrid grid whose viscous input is "visc.inp" in the run, with the body fitter and without
/// prisms.
inline const std::string kHybridHead
    = kGridHead + "-hyb=@/visc.inp -exm=@/Grid_Output//ex_grid_struct_map.dat ";
inline const std::string kHybrid = kHybridHead + kWholeGrid + " -b -sbi=body_fitter_input.dat";
inline const std::string kAdaptedHybrid = kHybridHead
    + "-i=@/Grid_Output/wing.treegen-adapted -f=VRK.grid.dat -tx=10 -ty=20.5 -tz=-3"
      " -l2g=@/Grid_Output//VRK.grd.L2G -p=@/Solver_Input//ParmFlw.h"
      " -b -sbi=body_fitter_input.dat";

inline const std::string kDirectories
    = " --Grid_Output=Grid_Output/ --Solver_Input=Solver_Input/ --Process_Output=Process_Output/";
inline const std::string kExtractor = "-linkid=1 --ModelDir=@/" + kDirectories;
inline const std::string kPreCalc = "-linkid=1 --ModelDir=@/ --ModelName=wing" + kDirectories;
inline const std::string kAdapter = kPreCalc;
inline const std::string kRotorProg
    = "-linkid=1 --ModelName=wing --ModelDir=@/ --SlvrRot=wing.SlvrRot --RtrGeom=wing.RtrGeom"
    + kDirectories + " --ParmFlw=ParmFlw.h --Local2Global=VRK.grd.L2G";
inline const std::string kSolverHead
    = "-linkid=1 --ModelName=wing --ModelDir=@/ --SlvrMain=wing.SlvrMain"
      " --Local2Global=VRK.grd.L2G --ParmFlw=ParmFlw.h --ParmRot=ParmRtr.h"
      " --SlvrRot=wing.SlvrRot --RtrGeom=wing.RtrGeom"
    + kDirectories;
inline const std::string kSolver = kSolverHead + " --Adaptive=0 --LastAdaptive=1";
inline const std::string kCycleSolver = kSolverHead + " --Adaptive=1 --LastAdaptive=0";
inline const std::string kLastCycleSolver = kSolverHead + " --Adaptive=1 --LastAdaptive=1";

} // namespace Testing::Expected
