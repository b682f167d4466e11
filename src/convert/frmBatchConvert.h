#pragma once
// "WAV Batch Converter": every listed WAV file converted to one chosen format and written
// under its own name in a chosen folder, through the wave chain.

#include <memory>

#include "convert/FileListForm.h"
#include "platform/wavechain/FormatChooser.h"
#include "platform/wavechain/WaveChain.h"

namespace cantovel {

class Timer;

class frmBatchConvert : public FileListForm {
    Q_OBJECT
  public:
    frmBatchConvert();
    ~frmBatchConvert() override;

    QAction* ConvertMenu;  // the File menu's run command
    int FileIndex = 0;
    bool RunFailed = false;
    QString OutputFolder;

    // SrcFile -> Trigger -> ACMConverter -> DstFile, as one component; null when none is
    // provided.
    std::unique_ptr<WaveChain> Chain;
    std::unique_ptr<FormatChooser> ACM;
    std::unique_ptr<Timer> tmrGauge;  // 100 ms while a file converts

    void RunMenu_Click() override;
    void ConvertFile();
    void Trigger_Started();
    void Trigger_DataEnd();
    void Trigger_Stopped();
    void DstFile_Error();
    void Timer_Tick();

  protected:
    bool queryUnload(UnloadMode mode) override;
};

}  // namespace cantovel
