#pragma once
// What every component fake shares: it registers itself as the component windows get,
// and keeps a list of the fakes alive so a test can reach the one a window made.

#include <QList>
#include <memory>

#include "platform/Components.h"

namespace cantovel::test {

template <class Fake, class Interface>
class TrackedFake {
  public:
    // Registers `Fake` as the `Interface` every window gets from now on.
    static void install() {
        Components::provideFactory<Interface>([] { return std::make_unique<Fake>(); });
    }
    // The fakes alive, oldest first, and the newest one (null if none).
    static QList<Fake*>& instances() {
        static QList<Fake*> all;
        return all;
    }
    static Fake* latest() { return instances().isEmpty() ? nullptr : instances().last(); }

  protected:
    // `self` is the fake under construction, given by its own constructor.
    explicit TrackedFake(Fake* self) : self_(self) { instances().append(self); }
    ~TrackedFake() { instances().removeOne(self_); }

  private:
    Fake* self_;
};

}  // namespace cantovel::test
