#include "settings/Texts.h"

#include <array>

namespace velmora {

namespace {

// {file}, {copy}, {detail} and {status} stand for what `sentence` puts in, {name} for what the bar
// of undoing does.
constexpr auto texts = std::to_array<TextPair>({
    // The settings file
    {"Le fichier des réglages {file} était endommagé. Il a été mis de côté sous {copy} "
     "et ce qui pouvait encore en être lu est dans un nouveau fichier.",
     "The settings file {file} was damaged. It was set aside as {copy} "
     "and what could still be read of it is in a new file."},
    {"Le fichier des réglages {file} vient d'une version plus récente de Velmora. "
     "Il reste intact ; rien ne sera enregistré cette fois.",
     "The settings file {file} comes from a newer version of Velmora. "
     "It is left untouched; nothing will be saved this time."},
    {"Les réglages de {file} ne sont pas ceux que Velmora a lus au démarrage. Ils sont "
     "restés intacts ; ce qui a été changé depuis est gardé à côté. Relance Velmora "
     "pour les retrouver.",
     "The settings in {file} are not those that Velmora read when it started. They were left "
     "untouched; what was changed since is kept beside them. Restart Velmora to get them back."},
    {"Le fichier des réglages {file} n'est plus là.", "The settings file {file} is gone."},
    {"Une copie de {file} du {copy} peut être reprise.",
     "A copy of {file} from {copy} can be restored."},
    {"La copie du {copy} est de nouveau dans {file}. Relance Velmora pour retrouver tes "
     "réglages.",
     "The copy from {copy} is back in {file}. Restart Velmora to get your settings back."},
    {"Reprendre la copie", "Restore the copy"},
    {"Impossible d'écrire les réglages dans {file} (err {status}). "
     "Les changements seront perdus à la fermeture de Velmora.",
     "Could not write the settings to {file} (err {status}). "
     "Changes will be lost when Velmora quits."},
    {"Plus de place pour les réglages dans {file} (err {status}). "
     "Les changements seront enregistrés quand de la place sera libérée.",
     "No space left for the settings in {file} (err {status}). "
     "Changes will be saved once space is freed."},
    {"Velmora est ouvert ailleurs avec les mêmes réglages ({file}). Ils sont lus ; rien "
     "ne sera enregistré tant que l'autre est ouvert.",
     "Velmora is open elsewhere with the same settings ({file}). They are read; nothing "
     "will be saved while the other one is open."},

    // The audio service
    {"Service audio injoignable", "Audio service not reachable"},
    {"Le système ne donne pas la priorité temps réel à Velmora : le son vient en blocs "
     "plus longs, donc avec un peu plus de retard. Installe rtkit, ou ajoute ton compte "
     "au groupe « pipewire », puis rouvre ta session.",
     "The system gives Velmora no real-time priority: sound comes in longer blocks, and so "
     "a little later. Install rtkit, or add your account to the group “pipewire”, then log in "
     "again."},

    // Starting the program
    {"Velmora est déjà ouvert.", "Velmora is already open."},

    // Refusals by the audio service
    {"Démarrage de la sortie refusé", "The output could not be started"},
    {"Démarrage de l'entrée refusé", "The input could not be started"},

    // The source menus and the choice of an application
    {"Appareil entier", "Whole device"},
    {"Rechercher", "Search"},
    {"Aucune application trouvée", "No application found"},

    // Presets that are carried, or could not be read
    {"Importer et exporter des presets", "Import and export presets"},
    {"Importer des presets…", "Import presets…"},
    {"Importer des presets", "Import presets"},
    {"Exporter", "Export"},
    {"Tous les presets…", "All presets…"},
    {"Presets Velmora", "Velmora presets"},
    {"Reprendre les presets mis de côté", "Bring back the presets set aside"},
    {"Presets importés : {name}", "Presets imported: {name}"},
    {"{file} n'est pas un fichier de presets Velmora, ou il est endommagé. "
     "Aucun preset n'a été importé.",
     "{file} is no file of Velmora presets, or it is damaged. "
     "No preset has been imported."},
    {"{file} vient d'une version plus récente de Velmora. "
     "Aucun preset n'a été importé.",
     "{file} comes from a newer version of Velmora. "
     "No preset has been imported."},
    {"Impossible de lire {file} ({detail}).", "Could not read {file} ({detail})."},
    {"Impossible d'écrire {file} ({detail}).", "Could not write {file} ({detail})."},
    {"Des presets enregistrés sont illisibles. Rien n'en est perdu : ils sont mis de "
     "côté et pourront être repris quand Velmora saura les lire.",
     "Some saved presets cannot be read. Nothing of them is lost: they are set aside "
     "and can be brought back once Velmora can read them."},
    {"Des presets mis de côté peuvent être repris, dans le menu à côté du preset.",
     "Presets that were set aside can be brought back, in the menu beside the preset."},

    // The choice of a file, where the desktop has no dialog of its own
    {"Ouvrir", "Open"},
    {"Nom du fichier", "File name"},
    {"Type de fichier", "File type"},
    {"Dossier", "Folder"},
    {"Tous les fichiers", "All files"},

    // What can be undone
    {"« {name} » retiré", "“{name}” removed"},
    {"Preset « {name} » supprimé", "Preset “{name}” deleted"},
    {"Preset « {name} » remplacé", "Preset “{name}” replaced"},
    {"Défaire", "Undo"},

    // The control window, as a screen reader calls its parts
    {"Couper le son", "Mute"},
    {"Couper la sortie directe", "Mute direct output"},
    {"Effets", "Effects"},
    {"Retirer", "Remove"},
    {"Masquer", "Dismiss"},
    {"Source", "Source"},
    {"Niveau", "Level"},
    {"Silence", "Silence"},
    {"Neutre", "Neutral"},
    {"Tonalité, de sombre à brillant", "Tone, from dark to bright"},
    {"Légère", "Light"},
    {"Moyenne", "Medium"},
    {"Forte", "Strong"},
    {"Quantité de réverbération", "Amount of reverb"},
    {"Gain automatique", "Automatic gain"},
    {"Gain fixe", "Fixed gain"},
    {"Interface du mode DAW", "DAW mode interface"},
    {"Touches : {keys}", "Keys: {keys}"},
    {"Contrôle", "Control"},
    {"virgule", "comma"},
    {"Du son en sort", "Playing"},
    {"Sous-menu", "Submenu"},
    {"Ouvert", "Expanded"},
    {"Fermé", "Collapsed"},
    {"Message", "Message"},

    // Tips
    {"Mettre le mix en marche", "Start the mix"},
    {"Arrêter le mix", "Stop the mix"},
    {"Source principale : en choisir une autre la remplace",
     "Primary source: choosing another one replaces it"},
    {"Rappeler ou enregistrer un setup", "Recall or save a setup"},
    {"Couper dans le mix", "Mute in the mix"},
    {"Remettre dans le mix", "Unmute in the mix"},
    {"Couper l'application chez toi seulement (le mix l'entend toujours)",
     "Silence the application in your room only (the mix still hears it)"},
    {"Réentendre l'application chez toi (le mix l'entend toujours)",
     "Hear the application in your room again (the mix hears it anyway)"},
    {"Retirer du mix", "Remove from the mix"},
    {"Niveau dans le mix ; double-clic : 0 dB", "Level in the mix; double-click: 0 dB"},
    {"Ce que tu entends ; double-clic : 0 dB", "What you hear; double-click: 0 dB"},
    {"Ce que les autres entendent ; double-clic : 0 dB", "What others hear; double-click: 0 dB"},
    {"Enlève les grondements", "Removes rumble"},
    {"Plus sombre ou plus brillant", "Darker or brighter"},
    {"De sombre à brillant ; double-clic : neutre", "From dark to bright; double-click: neutral"},
    {"Rapproche les sons forts des sons faibles", "Brings loud and soft sounds closer"},
    {"Ajoute une pièce autour du son", "Adds a room around the sound"},
    {"Quantité de réverbération ; double-clic : aucune", "Amount of reverb; double-click: none"},
    {"Adoucit les « p » et les « b » près du micro", "Softens p and b close to the microphone"},
    {"Baisse le souffle et les bruits constants", "Lowers hiss and steady noise"},
    {"Niveau après les effets", "Level after the effects"},
    {"Le gain suit la voix", "The gain follows the voice"},
    {"Gain fixe ; double-clic : 0 dB", "Fixed gain; double-click: 0 dB"},
    {"Un appareil pour ton logiciel audio : l'interface choisie et le micro virtuel ensemble",
     "A device for your audio software: the chosen interface and the virtual microphone together"},

    // What the user does not get of a source
    {"Cette app ne peut pas être coupée sur sa sortie directe.",
     "This app cannot be muted on its direct output."},
    {"Le son de cette app part sans être décodé : il ne peut pas être mixé.",
     "This app's sound leaves undecoded: it cannot be mixed."},
    {"Micro Bluetooth : la lecture passe en qualité d'appel.",
     "Bluetooth microphone: playback drops to call quality."},

    // Keys on the whole desktop, and what is so after them
    {"Raccourcis", "Shortcuts"},
    {"Raccourcis sur tout le bureau", "Shortcuts on the whole desktop"},
    {"Chaque commande de Velmora (« velmora --help ») peut avoir sa touche dans les réglages du "
     "clavier du bureau.",
     "Any of Velmora's commands (“velmora --help”) can be given a key in the desktop's keyboard "
     "settings."},
    {"Le bureau demande quelles touches utiliser.", "The desktop asks which keys to use."},
    {"Les raccourcis ont été refusés.", "The shortcuts were refused."},
    {"Le bureau n'a pas donné de raccourcis.", "The desktop has given no shortcuts."},
    {"Mettre le mix en marche ou l'arrêter", "Start or stop the mix"},
    {"Couper le micro virtuel", "Mute the virtual microphone"},
    {"Appuyer pour parler", "Push to talk"},
    {"Contourner tous les effets", "Bypass all effects"},
    {"Rappeler le preset suivant", "Recall the next preset"},
    {"Le micro virtuel reste fermé tant que sa touche n'est pas tenue",
     "The virtual microphone stays closed unless its key is held"},
    {"Fermé : tiens la touche pour parler", "Closed: hold the key to talk"},
    {"Ouvert tant que la touche est tenue", "Open as long as the key is held"},
    {"Le mix est en marche", "The mix is running"},
    {"Le mix est arrêté", "The mix is stopped"},
    {"Le micro virtuel est coupé", "The virtual microphone is muted"},
    {"Le micro est fermé : tiens la touche pour parler",
     "The microphone is closed: hold the key to talk"},
    {"Le micro est ouvert", "The microphone is open"},
    {"Appuyer pour parler est désactivé : la touche ne change rien",
     "Push to talk is off: the key changes nothing"},
    {"Preset « {name} »", "Preset “{name}”"},

    // What has become of a source
    {"S'entend dans le micro", "Hears itself in the microphone"},
    {"Cette app s'est fermée.", "This app has closed."},
    {"Débranché : reprend dès son retour.", "Unplugged: resumes once it is back."},
    {"N'a pas pu démarrer.", "Could not be started."},
    {"Attend que cette app joue.", "Waiting for this app to play."},
    {"Reprendre", "Take up again"},
    {"Relancer", "Open again"},
    {"Ouverture…", "Opening…"},
    {"Ouverture de {name}…", "Opening {name}…"},

    // What others do not hear of the mix
    {"Aucun programme n'écoute le micro", "No program listens to the microphone"},
    {"Coupé dans un autre mélangeur", "Muted in another mixer"},
    {"Baissé à {percent} % dans un autre mélangeur", "Turned down to {percent}% in another mixer"},
    {"Remettre à 100 %", "Back to 100%"},

    // The effects of all sources, and the limiters
    {"Effets de toutes les sources", "Effects of all sources"},
    {"Entendre le mix sans effets", "Hear the mix without effects"},
    {"Entendre le mix avec ses effets", "Hear the mix with its effects"},
    {"Contournés", "Bypassed"},
    {"Le limiteur travaille : baisse un peu les sources",
     "The limiter is working: turn the sources down a little"},

    // The item in the panel
    {"mix en marche", "mix running"},
    {"mix arrêté", "mix stopped"},
    {"micro coupé", "microphone muted"},

    // The mix and its outputs
    {"En marche", "Running"},
    {"Arrêté", "Stopped"},
    {"Casque", "Headphones"},
    {"Micro virtuel", "Virtual microphone"},
    {"Blocs de {frames} échantillons, {missed} manqués en une minute",
     "Blocks of {frames} samples, {missed} missed in a minute"},
});

} // namespace

std::span<const TextPair> addedTexts() {
    return texts;
}

} // namespace velmora
