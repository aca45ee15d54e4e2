// The input is what a card terminal sends: messages, as far as they are whole. What they mean is
// read and put together again.

#include "Fuzzing.h"

#include <Zvt_p.h>

namespace zvt = rivo::payment::zvt;

namespace
{

/// All fields and objects are parts of the data, which are not longer than it.
void checkFields(const QByteArray& data)
{
    const auto fields = zvt::fieldsOf(data);
    if (!fields)
        return;
    int size = 0;
    for (auto field = fields->begin(); field != fields->end(); ++field) {
        size += 1 + field->size();
        fuzzing::require(data.contains(field.value()), "a field that is not in the data");
        const auto number = zvt::numberOf(field.value());
        fuzzing::require(!number || zvt::digits(*number, field->size()) == field.value(),
                         "digits that are another number");
    }
    fuzzing::require(size <= data.size(), "more fields than data");
    fuzzing::require(zvt::maskedNumber(fields->value(zvt::CardNumber)).size() <= 9,
                     "more than the end of a card's number");
    const QByteArray container = fields->value(zvt::Container);
    const auto objects = zvt::objectsOf(container);
    for (const zvt::Object& each : objects.value_or(QVector<zvt::Object>()))
        fuzzing::require(container.contains(each.value), "an object that is not in the container");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray received = fuzzing::bytes(data, size);
    while (true) {
        const QByteArray before = received;
        const auto message = zvt::takeMessage(received);
        if (!message) {
            fuzzing::require(received == before, "a part of a message was taken");
            break;
        }
        QByteArray again = zvt::encoded(*message);
        const auto same = zvt::takeMessage(again);
        fuzzing::require(same && same->command == message->command && same->data == message->data &&
                             again.isEmpty(),
                         "another message");
        checkFields(message->data);
        zvt::statusCode(message->data);
        fuzzing::require(zvt::textOfStatus(message->data).size() <= 200, "a long text");
        zvt::textOfCode(message->refusal());
    }
    return 0;
}
