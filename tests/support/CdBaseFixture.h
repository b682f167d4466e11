#pragma once
// A test with a CdBase on a scripted CD audio device.

#include <memory>

#include "cd/CdBase.h"
#include "platform/Components.h"
#include "support/AppTest.h"
#include "support/FakeMciDevice.h"

namespace cantovel::test {

class CdBaseFixture : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        Components::provideFactory<MciDevice>([this] {
            auto d = std::make_unique<FakeMciDevice>();
            mci = d.get();
            return d;
        });
    }
    void TearDown() override {
        cd.reset();
        AppTest::TearDown();
    }

    // A CdBase whose device holds the disc of the three tracks at 00:02:00, 03:20:10 and
    // 06:10:05 with its lead-out at 09:00:00 (disc ID 0e021a03).
    CdBase& make() {
        cd = std::make_unique<CdBase>();
        mci->setDisc({150, 15010, 27755}, 40500);
        return *cd;
    }

    std::unique_ptr<CdBase> cd;
    FakeMciDevice* mci = nullptr;
};

}  // namespace cantovel::test
