// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/GeneralConLink.h"
#include "links/SolverConLink.h"

#include <memory>

namespace Standins {

/// A slot of the link manager for the life of the object.
class ManagerSlot {
public:
    /// Errors: `Refusal`.
    ManagerSlot();
    ~ManagerSlot();
    ManagerSlot(const ManagerSlot&) = delete;
    ManagerSlot& operator=(const ManagerSlot&) = delete;
    ManagerSlot(ManagerSlot&&) = delete;
    ManagerSlot& operator=(ManagerSlot&&) = delete;
};

/// What a solver tells while it runs.
struct SolverProgress {
    int m_nStep = 0; ///< steps done
    double m_dSubStep = 0.0; ///< fraction of the step under way
    double m_dTotalMassResidual = 0.0;
    double m_dMaxMassResidual = 0.0;
};

/// How a program says that it has ended well.
enum class LinkKind {
    General, ///< success flag
    GridGenerator, ///< completion state 1
    Solver, ///< success flag, and the solver's own record
};

/// A program's end of the link that the controller made for it.
/// Errors: `Refusal` if the link cannot be attached to, read or written: without it the controller
/// can neither stop the program nor see its success.
class ChildLink {
public:
    ChildLink(LinkKind kind, unsigned int id);

    [[nodiscard]] bool stop_requested() const;
    /// Nothing on a solver's link, which has no such field.
    void publish(double fraction);
    /// Solver's link only.
    void publish(const SolverProgress& progress);
    void succeed();

private:
    LinkKind m_kind;
    std::unique_ptr<Tavro::GeneralConLink> m_general;
    std::unique_ptr<Tavro::SolverConLink> m_solver;
};

} // namespace Standins
