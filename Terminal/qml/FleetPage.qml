import QtQuick 2.15
import Rivo.Terminal 1.0

Item {
    required property Terminal terminal
}
