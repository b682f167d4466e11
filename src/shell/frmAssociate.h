#pragma once
// "Associate Supported Formats...": binds the media file types to the program, in one of
// two variants (a path opens a new start, or reaches the running instance), and puts back
// the former types of the boxes left unticked.

#include <QString>
#include <QStringList>
#include <array>
#include <optional>

#include "app/Form.h"

class QCheckBox;
class QPushButton;

namespace cantovel {

class frmAssociate : public Form {
    Q_OBJECT
  public:
    frmAssociate();

    // The twelve type boxes, by their names.
    QCheckBox *Check1, *Check2, *Check3, *Check4, *Check5, *Check6, *Check8, *Check9, *Check10,
        *Check11, *Check12, *Check13;
    // "Launch Associations in Current Application Instance when Available".
    QCheckBox* Check24;
    QPushButton* Command1;  // "&Select All"
    QPushButton* Command2;  // "Clear &All"
    QPushButton* Command3;  // "&Process"
    QPushButton* Command4;  // "&Cancel"

    void Form_Load();
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Form_KeyDown(int KeyCode, int Shift);

    // The result of the last AssociateFileType call of the last processing; nothing when
    // no call was made.
    std::optional<bool> LastResult;

    // One type box, as processing sees it.
    struct TypeBox {
        QCheckBox* box;
        QStringList plain, sameInstance;          // extensions bound
        QStringList plainBack, sameInstanceBack;  // extensions put back when unticked
    };
    // The boxes in the order they are processed.
    const std::array<TypeBox, 12>& typeBoxes() const { return boxes_; }

    // The section of the former types of the extensions.
    static QString BackupsKey();

  protected:
    bool unloadEvent() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    std::array<TypeBox, 12> boxes_;
};

}  // namespace cantovel
