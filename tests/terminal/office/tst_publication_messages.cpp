#include "Publishing.h"
#include "Table.h"

#include <FleetMessages.h>
#include <QCborArray>
#include <QCborValue>
#include <QTest>

using namespace rivo::office;

namespace
{

const QByteArray hash(32, 'h');
const QByteArray signature(64, 's');

QByteArray message(const QCborArray& items) { return QCborValue(items).toCbor(); }

/// An announcement with another item at a place.
QByteArray announcementWith(int place, const QCborValue& item)
{
    QCborArray items{1, "lakeside", "feed", 7, 1790000000, 500, hash, "network.zip", signature};
    items[place] = item;
    return message(items);
}

} // namespace

/// What the office and vehicles say to each other about publications.
class TestPublicationMessages : public QObject
{
    Q_OBJECT

private slots:
    void announcementComesBack()
    {
        const Announcement sent{"lakeside",
                                PublicationKind::Drivers,
                                7,
                                QDateTime::fromSecsSinceEpoch(1790000000, Qt::UTC),
                                500,
                                hash,
                                QString::fromUtf8("Fahrer ü.json"),
                                signature};
        const auto read = announcementOf(encode(sent));
        QVERIFY(read.has_value());
        QCOMPARE(read->operatorName, sent.operatorName);
        QCOMPARE(read->kind, sent.kind);
        QCOMPARE(read->version, sent.version);
        QCOMPARE(read->validFrom, sent.validFrom);
        QCOMPARE(read->size, sent.size);
        QCOMPARE(read->sha256, sent.sha256);
        QCOMPARE(read->name, sent.name);
        QCOMPARE(read->signature, sent.signature);
    }

    void announcementIsRead_data()
    {
        const Table<QByteArray, bool> row("bytes", "isRead");
        row("nothing is wrong", announcementWith(3, 7), true);
        row("the largest size", announcementWith(5, mostBytesOfPublication), true);
        row("the longest name", announcementWith(7, QString(200, 'n')), true);
        row("another version of the format", announcementWith(0, 2), false);
        row("no operator", announcementWith(1, ""), false);
        row("an operator that is no name", announcementWith(1, "a/b"), false);
        row("an operator that is a number", announcementWith(1, 5), false);
        row("an unknown kind", announcementWith(2, "feeds"), false);
        row("a kind that is a number", announcementWith(2, 0), false);
        row("version 0", announcementWith(3, 0), false);
        row("a negative version", announcementWith(3, -1), false);
        row("a version beyond all", announcementWith(3, Q_INT64_C(1) << 41), false);
        row("a version that is text", announcementWith(3, "7"), false);
        row("a time before 1970", announcementWith(4, -1), false);
        row("a time beyond all", announcementWith(4, Q_INT64_C(1) << 41), false);
        row("a time with a fraction", announcementWith(4, 1.5), false);
        row("no content", announcementWith(5, 0), false);
        row("a negative size", announcementWith(5, -1), false);
        row("a size that is too large", announcementWith(5, mostBytesOfPublication + 1), false);
        row("a hash that is too short", announcementWith(6, hash.chopped(1)), false);
        row("a hash that is text", announcementWith(6, QString(32, 'h')), false);
        row("a name that is too long", announcementWith(7, QString(201, 'n')), false);
        row("a name of bytes", announcementWith(7, QByteArray("n")), false);
        row("a signature that is too short", announcementWith(8, signature.chopped(1)), false);
        row("no signature", announcementWith(8, QByteArray()), false);
        row("an item more", announcementWith(9, 5), false);
        row("bytes that follow", announcementWith(3, 7) + '\0', false);
        row("an end that is cut off", announcementWith(3, 7).chopped(1), false);
        row("no bytes", "", false);
        row("deeply nested", QByteArray(100000, '\x81'), false);
    }

    void announcementIsRead()
    {
        QFETCH(QByteArray, bytes);
        QTEST(announcementOf(bytes).has_value(), "isRead");
    }

    void signatureCoversAll_data()
    {
        const Table<Announcement> row("forged");
        const Announcement good = publisher().announce(7, "content");
        const auto with = [&](const char* name, auto Announcement::*field, const auto& value) {
            Announcement forged = good;
            forged.*field = value;
            row(name, forged);
        };
        with("the operator", &Announcement::operatorName, QString("hillside"));
        with("the kind", &Announcement::kind, PublicationKind::Drivers);
        with("the version", &Announcement::version, qint64(8));
        with("the time", &Announcement::validFrom, good.validFrom.addSecs(1));
        with("the size", &Announcement::size, good.size + 1);
        with("the hash", &Announcement::sha256, sha256Of("another"));
        with("the name", &Announcement::name, QString("network.zip"));
        with("the signature", &Announcement::signature, QByteArray(64, '\0'));
        with("the signer", &Announcement::signature,
             TestPublisher().announce(7, "content").signature);
    }

    void signatureCoversAll()
    {
        QFETCH(Announcement, forged);
        const QByteArray key = publisher().key.publicKey();
        QVERIFY(isPublishedBy(key, publisher().announce(7, "content")));
        QVERIFY(!isPublishedBy(key, forged));
        QVERIFY(!isPublishedBy({}, publisher().announce(7, "content")));
    }

    void pieceComesBack()
    {
        const WantedPiece wanted{PublicationKind::Paid, 7, 500};
        const auto asked = wantedPieceOf(encode(wanted));
        QVERIFY(asked && asked->kind == wanted.kind && asked->version == 7 && asked->offset == 500);
        const QByteArray bytes(mostBytesOfPiece, '\xFF');
        const auto read = pieceOf(encode(Piece{wanted, bytes}));
        QVERIFY(read.has_value());
        QCOMPARE(read->wanted.offset, 500);
        QCOMPARE(read->bytes, bytes);
    }

    void pieceIsRefused_data()
    {
        const Table<QByteArray> row("bytes");
        row("no bytes", "");
        row("another version of the format", message({2, "feed", 7, 0, QByteArray("x")}));
        row("an unknown kind", message({1, "x", 7, 0, QByteArray("x")}));
        row("version 0", message({1, "feed", 0, 0, QByteArray("x")}));
        row("a negative place", message({1, "feed", 7, -1, QByteArray("x")}));
        row("a place beyond all",
            message({1, "feed", 7, mostBytesOfPublication + 1, QByteArray("x")}));
        row("text", message({1, "feed", 7, 0, "x"}));
        row("too many bytes", message({1, "feed", 7, 0, QByteArray(mostBytesOfPiece + 1, 'x')}));
        row("a question", encode(WantedPiece{PublicationKind::Feed, 7, 0}));
    }

    void pieceIsRefused()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!pieceOf(bytes).has_value());
    }

    void questionIsRefused_data()
    {
        const Table<QByteArray> row("bytes");
        row("no bytes", "");
        row("another version of the format", message({2, "feed", 7, 0}));
        row("an unknown kind", message({1, "x", 7, 0}));
        row("a version that is text", message({1, "feed", "7", 0}));
        row("a place that is text", message({1, "feed", 7, "0"}));
        row("a piece", encode(Piece{{PublicationKind::Feed, 7, 0}, "x"}));
    }

    void questionIsRefused()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!wantedPieceOf(bytes).has_value());
    }

    void statesComeBack()
    {
        const auto read = publicationStatesOf(
            encode(QVector<PublicationState>{{PublicationKind::Feed, 7, 6, 8, QString(300, 'r')},
                                             {PublicationKind::Limits, 0, 0, 0, {}}}));
        QVERIFY(read && read->size() == 2);
        QCOMPARE(read->first().taken, 7);
        QCOMPARE(read->first().inUse, 6);
        QCOMPARE(read->first().refused, 8);
        QCOMPARE(read->first().refusal, QString(200, 'r'));
        QCOMPARE(read->last().kind, PublicationKind::Limits);
    }

    void statesAreRefused_data()
    {
        const Table<QByteArray> row("bytes");
        const QCborArray good{"feed", 7, 6, 8, "reason"};
        const auto with = [&](int place, const QCborValue& item) {
            QCborArray items = good;
            items[place] = item;
            return message({1, QCborArray{items}});
        };
        row("no bytes", "");
        row("no list", message({1, 5}));
        row("a state that is a number", message({1, QCborArray{5}}));
        row("more than there are kinds", message({1, QCborArray{good, good, good, good, good}}));
        row("an unknown kind", with(0, "x"));
        row("a negative version", with(1, -1));
        row("a version that is text", with(2, "6"));
        row("a version beyond all", with(3, Q_INT64_C(1) << 41));
        row("a reason that is a number", with(4, 5));
        row("a reason that is too long", with(4, QString(201, 'r')));
        row("an item more", with(5, 5));
    }

    void statesAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!publicationStatesOf(bytes).has_value());
    }

    void announcementsAreNotOfAVehicle()
    {
        const QString topic = publicationTopic("lakeside", nameOf(PublicationKind::Feed));
        QCOMPARE(topic, "rivo-publications/lakeside/feed");
        QCOMPARE(Topics::vehicleOf(topic), QString());
    }

private:
    static const TestPublisher& publisher()
    {
        static const TestPublisher made;
        return made;
    }
};

Q_DECLARE_METATYPE(rivo::office::Announcement)

QTEST_GUILESS_MAIN(TestPublicationMessages)
#include "tst_publication_messages.moc"
