#pragma once
// The CD and CDDB control: drives an audio CD through the CD audio device, works out the
// disc's CDDB identity, looks the disc up on a CDDB server over the line protocol, and
// turns a CDDB record into properties and back into a submission text.
//
// Every operation passes over its own failures step by step: a failed step leaves its
// target as it was. The two errors a disc ID raises ("Unable to open device", "No Audio CD
// found") end the operation and stay inside it; LastError() tells them for whoever wants.
// The CDDB exchanges wait for their answers on the UI thread, letting events run, each
// wait bounded by Timer1.

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <array>
#include <memory>

#include "cd/Winsock.h"
#include "platform/clock/Timer.h"
#include "platform/mci/MciDevice.h"

namespace cantovel {

class CdBase : public QObject {
    Q_OBJECT
  public:
    explicit CdBase(QObject* parent = nullptr);
    ~CdBase() override;

    // The public members, in the class's order.
    QString GetCddbUseQueryString(QString& query);
    QString GetQueryString();
    QString NewLineFix(QString& text);
    void cddbSend(const QString& text);
    QString CloseMatchDecode(const QString& text);
    QString GetCddb();
    QString GetExtTrackData(int track) const;
    qint16 Getlscat();
    QString GetMyHostName() const;
    qint16 GetSites();
    QString GetMotd();
    QString GetMSid(const QString& drive);
    QString PullData(QString& text, const QString& key);
    QString RemoveTopLine(const QString& text);
    void SetExtTrackData(int track, const QString& text);
    void SetSongName(int track, const QString& text);
    QString SiteAddress(int row) const;
    qint16 SitePort(int row) const;
    QString SiteLocation(int row) const;
    QString SongName(int track) const;
    QString GetCategory(int row) const;
    qint32 SongLength(int track, bool ask);
    QString SubmitString();
    QString Server;
    qint16 Port = 0;
    QString Email() const { return email_; }
    void setEmail(const QString& v);
    qint16 DiscLength = 0;
    qint16 Tracks = 0;
    QString Position(int format);
    QString Command() const { return command_; }
    void setCommand(const QString& word);
    QString Cdid();
    void setCdid(const QString& id) { cdid_ = id; }
    qint16 CurrentTrack();
    void setCurrentTrack(qint16 track);
    void PlayTrack(qint16 track);
    QString Revision() const { return revision_; }
    void setRevision(const QString& v);
    qint16 Sites = 0;
    QString Title;
    qint16 Categories = 0;
    QString Category;
    QString CdTitle;
    QString Artist;
    qint32 Mode();
    QString AppName() const { return appName_; }
    void setAppName(const QString& v);
    QString ExtData;
    QString PlayOrder;
    qint16 DataRev = 0;
    QString HostName() const { return hostName_; }
    void setHostName(const QString& v);
    qint32 CloseMatchWinLeft = 0;
    qint32 CloseMatchWinTop = 0;
    bool UseFirstMatch = false;
    qint32 ConnectTimeout() const { return connectTimeout_; }
    void setConnectTimeout(qint32 ms);
    // Fills `letters` as the classic drive test did: see the source.
    int GetCdDriveLetters(QStringList& letters);

    // The host of the network database asked when Server is empty.
    static const QString DefaultServer;

    struct Error {
        quint32 Number = 0;
        QString Source, Description;
    };
    Error LastError() const { return lastError_; }

    // The read answer into the record's properties; the summary text GetCddb gives.
    QString ParseReadResponse(const QString& answer);
    // A category list or a site list answer into Categories or Sites and their rows; the
    // code line the list requests go by.
    QString parseLscat(const QString& answer);
    QString parseSites(const QString& answer);
    // "OK", or what keeps the record from being submitted.
    QString CheckSubmitData();

    MciDevice* MMControl1() const { return mci_.get(); }
    Winsock Winsock1;
    Timer Timer1{30000};

  signals:
    void ModeChange(const QString& status);
    void DataSent(const QString& text, int length);

  private:
    struct Msf {
        qint32 Minute = 0, Second = 0, Frame = 0;
        qint64 frames() const { return Minute * 4500LL + Second * 75LL + Frame; }
    };
    struct Site {
        QString Address;
        qint16 Port = 0;
        QString Location;
    };

    // The CD half.
    QString computeDiscId();
    void raise(quint32 number, const QString& text);
    void deviceCommand(const QString& word);
    int deviceMode();
    void statusUpdate();
    // The greeting's words may hold no blank: true, after the box, when `value` does.
    static bool refuseBlank(const QString& value, const QString& property, bool critical);
    static Msf split(qint32 msf);

    // The protocol half.
    bool ConnectToServer();
    bool SendHello();
    QString SendQuery(const QString& query);
    QString SendRead(const QString& category, const QString& discId);
    QString SendLscat();
    QString SendSitesRequest();
    QString SendMotdRequest();
    void SendQuit();
    QString lookUp(const QString& query);
    // The common wait: sends `text` (unless empty), waits for the answer or Timer1. False
    // when it timed out, after the box with `timeoutMessage`.
    bool exchange(const QString& text, const QString* terminator, const QString& timeoutMessage);
    void Winsock1_DataArrival();
    void Winsock1_Close();
    void Timer1_Timer();
    // Connects, greets, asks for a list and gives its row count when it came.
    qint16 listRequest(QString (CdBase::*send)(), QString (CdBase::*parse)(const QString&),
                       const qint16& rows);

    std::unique_ptr<MciDevice> mci_;
    QString email_, hostName_, appName_ = QStringLiteral("ActiveX"),
                               revision_ = QStringLiteral("1.0");
    QString cdid_, command_;
    qint16 currentTrack_ = 0;
    qint32 mode_ = 0;
    qint32 connectTimeout_ = 0;
    qint32 lastMode_ = 0;
    Error lastError_;

    std::array<Msf, 101> trackOffsets_{};
    std::array<qint32, 101> trackLengths_{};
    std::array<QString, 101> songNames_, extTrackData_;
    std::array<Site, 101> sites_;
    std::array<QString, 51> categories_;

    bool waiting_ = false, timedOut_ = false;
    QString terminator_, buffer_;
};

}  // namespace cantovel
