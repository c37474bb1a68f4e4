pragma Singleton
import QtQuick
import Velmora.Kit

// Looks a French text up in the user's language. A binding that calls t() follows the language,
// because the language is an argument of the lookup: a bare read would be compiled away.
QtObject {
    function t(french: string): string {
        return AppTexts.lookup(AppTexts.language, french);
    }
}
