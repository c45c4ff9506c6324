// One campaign.
import QtQuick

Item {
}
