<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>DiarizationSettings</name>
    <message>
        <source>Diarization Defaults</source>
        <translation>Diarisation par défaut</translation>
    </message>
    <message>
        <source>Controls the default speaker detection mode for newly processed meetings.</source>
        <translation>Définit le mode de détection des intervenants par défaut pour les prochaines réunions traitées.</translation>
    </message>
    <message>
        <source>Enable diarization by default</source>
        <translation>Activer la diarisation par défaut</translation>
    </message>
    <message>
        <source>Speakers</source>
        <translation>Intervenants</translation>
    </message>
    <message>
        <source>Detected automatically</source>
        <translation>Détectés automatiquement</translation>
    </message>
</context>
<context>
    <name>Disclosure</name>
    <message>
        <source>Expanded</source>
        <translation>Déplié</translation>
    </message>
    <message>
        <source>Collapsed</source>
        <translation>Replié</translation>
    </message>
</context>
<context>
    <name>HuggingFaceSettings</name>
    <message>
        <source>Hugging Face</source>
        <translation>Hugging Face</translation>
    </message>
    <message>
        <source>Stores the Hugging Face token used by the local diarization models.</source>
        <translation>Conserve le jeton Hugging Face utilisé par les modèles de diarisation locaux.</translation>
    </message>
    <message>
        <source>HF_TOKEN</source>
        <translation>HF_TOKEN</translation>
    </message>
</context>
<context>
    <name>MeetingDetail</name>
    <message>
        <source>Notion page already exists</source>
        <translation>La page Notion existe déjà</translation>
    </message>
    <message>
        <source>A page for this meeting ID was found in the configured Notion database.</source>
        <translation>Une page portant l’identifiant de cette réunion a été trouvée dans la base de données Notion configurée.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Remplacer</translation>
    </message>
    <message>
        <source>Create New</source>
        <translation>En créer une autre</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>MeetingHeader</name>
    <message>
        <source>Meeting name</source>
        <translation>Nom de la réunion</translation>
    </message>
    <message>
        <source>Open Notion page</source>
        <translation>Ouvrir la page Notion</translation>
    </message>
    <message>
        <source>Processing Details</source>
        <translation>Détails du traitement</translation>
    </message>
    <message>
        <source>No Transcript</source>
        <translation>Aucune transcription</translation>
    </message>
    <message>
        <source>Process a recording or select a completed meeting.</source>
        <translation>Traitez un enregistrement ou sélectionnez une réunion terminée.</translation>
    </message>
</context>
<context>
    <name>NotionSettings</name>
    <message>
        <source>Notion</source>
        <translation>Notion</translation>
    </message>
    <message>
        <source>Stores the Notion integration token and validates the target database for transcript sync.</source>
        <translation>Conserve le jeton d’intégration Notion et vérifie la base de données qui reçoit les transcriptions.</translation>
    </message>
    <message>
        <source>Notion integration token</source>
        <translation>Jeton d’intégration Notion</translation>
    </message>
    <message>
        <source>Notion database URL</source>
        <translation>Adresse de la base de données Notion</translation>
    </message>
    <message>
        <source>Sync DB</source>
        <translation>Synchroniser la base</translation>
    </message>
    <message>
        <source>Notion property mapping</source>
        <translation>Correspondance des propriétés Notion</translation>
    </message>
    <message>
        <source>Click Sync DB to load properties from the selected Notion database.</source>
        <translation>Cliquez sur «&#xa0;Synchroniser la base&#xa0;» pour charger les propriétés de la base de données Notion choisie.</translation>
    </message>
</context>
<context>
    <name>OllamaSettings</name>
    <message>
        <source>Ollama</source>
        <translation>Ollama</translation>
    </message>
    <message>
        <source>Checks the local Ollama setup used for richer private summaries and speaker hints.</source>
        <translation>Vérifie l’installation locale d’Ollama, qui enrichit les résumés privés et les indices sur les intervenants.</translation>
    </message>
    <message>
        <source>Check Ollama again</source>
        <translation>Vérifier à nouveau Ollama</translation>
    </message>
    <message>
        <source>Use Ollama for richer speaker hints and summaries</source>
        <translation>Utiliser Ollama pour enrichir les résumés et les indices sur les intervenants</translation>
    </message>
    <message>
        <source>Command to install the model</source>
        <translation>Commande d’installation du modèle</translation>
    </message>
</context>
<context>
    <name>PanelText</name>
    <message>
        <source>A meeting is being recorded</source>
        <translation>Une réunion est en cours d’enregistrement</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Enregistrement</translation>
    </message>
    <message>
        <source>New recording</source>
        <translation>Nouvel enregistrement</translation>
    </message>
    <message>
        <source>Pause or resume</source>
        <translation>Mettre en pause ou reprendre</translation>
    </message>
    <message>
        <source>Stop and process</source>
        <translation>Arrêter et traiter</translation>
    </message>
    <message>
        <source>Meeting</source>
        <translation>Réunion</translation>
    </message>
    <message>
        <source>Import audio</source>
        <translation>Importer un fichier audio</translation>
    </message>
    <message>
        <source>Process</source>
        <translation>Traiter</translation>
    </message>
    <message>
        <source>Play or stop the audio</source>
        <translation>Lire ou arrêter l’audio</translation>
    </message>
    <message>
        <source>Copy the transcript</source>
        <translation>Copier la transcription</translation>
    </message>
    <message>
        <source>Open the files</source>
        <translation>Ouvrir les fichiers</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenêtre</translation>
    </message>
    <message>
        <source>Meetings</source>
        <translation>Réunions</translation>
    </message>
    <message>
        <source>Speaker profiles</source>
        <translation>Profils d’intervenants</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Between the sidebar and the page</source>
        <translation>Passer de la barre latérale à la page</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>Keyboard shortcuts</source>
        <translation>Raccourcis clavier</translation>
    </message>
    <message>
        <source>Close the window</source>
        <translation>Fermer la fenêtre</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>In the list of meetings</source>
        <translation>Dans la liste des réunions</translation>
    </message>
    <message>
        <source>From meeting to meeting</source>
        <translation>D’une réunion à l’autre</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Afficher</translation>
    </message>
    <message>
        <source>Menu of the meeting</source>
        <translation>Menu de la réunion</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>In the transcript</source>
        <translation>Dans la transcription</translation>
    </message>
    <message>
        <source>From turn to turn</source>
        <translation>D’une prise de parole à l’autre</translation>
    </message>
    <message>
        <source>Play from there</source>
        <translation>Lire à partir de là</translation>
    </message>
    <message>
        <source>Copy the turn</source>
        <translation>Copier la prise de parole</translation>
    </message>
    <message>
        <source>In the speaker profiles</source>
        <translation>Dans les profils d’intervenants</translation>
    </message>
    <message>
        <source>From profile to profile</source>
        <translation>D’un profil à l’autre</translation>
    </message>
    <message>
        <source>Finishing the recording</source>
        <translation>Finalisation de l’enregistrement</translation>
    </message>
    <message>
        <source>Importing audio</source>
        <translation>Importation de l’audio</translation>
    </message>
    <message>
        <source>%1 audio</source>
        <translation>%1 d’audio</translation>
    </message>
    <message>
        <source>synced to Notion</source>
        <translation>synchronisée avec Notion</translation>
    </message>
    <message>
        <source>ready to sync</source>
        <translation>prête à synchroniser</translation>
    </message>
    <message>
        <source>Processing meeting</source>
        <translation>Traitement de la réunion</translation>
    </message>
    <message>
        <source>Transcribing locally</source>
        <translation>Transcription sur cet ordinateur</translation>
    </message>
    <message>
        <source>Transcript ready</source>
        <translation>Transcription prête</translation>
    </message>
    <message>
        <source>Audio ready</source>
        <translation>Audio prêt</translation>
    </message>
    <message>
        <source>Audio is available. Process it to generate transcript and speaker review.</source>
        <translation>L’audio est disponible. Traitez-le pour obtenir la transcription et passer les intervenants en revue.</translation>
    </message>
    <message>
        <source>Ready for a meeting</source>
        <translation>Prêt pour une réunion</translation>
    </message>
    <message>
        <source>Record a new meeting or import an existing audio file.</source>
        <translation>Enregistrez une nouvelle réunion ou importez un fichier audio existant.</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Traitement en cours</translation>
    </message>
    <message>
        <source>Import Audio</source>
        <translation>Importer un fichier audio</translation>
    </message>
    <message>
        <source>Sync to Notion</source>
        <translation>Synchroniser avec Notion</translation>
    </message>
    <message>
        <source>Sync Again</source>
        <translation>Resynchroniser</translation>
    </message>
    <message>
        <source>Syncing</source>
        <translation>Synchronisation</translation>
    </message>
    <message>
        <source>Stop Audio</source>
        <translation>Arrêter la lecture</translation>
    </message>
    <message>
        <source>Play Meeting</source>
        <translation>Écouter la réunion</translation>
    </message>
    <message>
        <source>Reprocess</source>
        <translation>Retraiter</translation>
    </message>
    <message>
        <source>Open Files</source>
        <translation>Ouvrir les fichiers</translation>
    </message>
    <message>
        <source>%1s</source>
        <translation>%1&#xa0;s</translation>
    </message>
    <message>
        <source>%1m %2s</source>
        <translation>%1&#xa0;min %2&#xa0;s</translation>
    </message>
    <message>
        <source>completed in %1</source>
        <translation>terminé en %1</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1&#x202f;%</translation>
    </message>
    <message>
        <source>Meeting paused</source>
        <translation>Réunion en pause</translation>
    </message>
    <message>
        <source>Meeting in progress</source>
        <translation>Réunion en cours</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Reprendre</translation>
    </message>
    <message>
        <source>Finalize</source>
        <translation>Finaliser</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Mettre en pause</translation>
    </message>
    <message>
        <source>Stop &amp; Process</source>
        <translation>Arrêter et traiter</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Traitement</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>État</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Message</translation>
    </message>
    <message>
        <source>Elapsed</source>
        <translation>Temps écoulé</translation>
    </message>
    <message>
        <source>Transcription</source>
        <translation>Transcription</translation>
    </message>
    <message>
        <source>Audio</source>
        <translation>Audio</translation>
    </message>
    <message>
        <source>Local LLM</source>
        <translation>LLM local</translation>
    </message>
    <message>
        <source>unavailable</source>
        <translation>indisponible</translation>
    </message>
    <message>
        <source>New Recording</source>
        <translation>Nouvel enregistrement</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importer</translation>
    </message>
    <message>
        <source>Local Data</source>
        <translation>Données</translation>
    </message>
    <message>
        <source> · speaker detection off</source>
        <translation> · détection des intervenants désactivée</translation>
    </message>
    <message>
        <source> · speaker detection on · exactly %1</source>
        <translation> · détection des intervenants activée · exactement %1</translation>
    </message>
    <message>
        <source> · speaker detection on · %1-%2 speakers</source>
        <translation> · détection des intervenants activée · de %1 à %2 intervenants</translation>
    </message>
    <message>
        <source> · speaker detection on · auto</source>
        <translation> · détection des intervenants activée · automatique</translation>
    </message>
    <message>
        <source>Count: %1</source>
        <translation>Nombre&#xa0;: %1</translation>
    </message>
    <message>
        <source>Min: %1</source>
        <translation>Min.&#xa0;: %1</translation>
    </message>
    <message>
        <source>Max: %1</source>
        <translation>Max.&#xa0;: %1</translation>
    </message>
    <message>
        <source>French</source>
        <translation>Français</translation>
    </message>
    <message>
        <source>English</source>
        <translation>Anglais</translation>
    </message>
    <message>
        <source>Exactly</source>
        <translation>Exactement</translation>
    </message>
    <message>
        <source>Between</source>
        <translation>Entre</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Could not check token status in Keychain.</source>
        <translation>Impossible de vérifier si le trousseau de clés contient un jeton.</translation>
    </message>
    <message>
        <source>Could not save token to Keychain.</source>
        <translation>Impossible d’enregistrer le jeton dans le trousseau de clés.</translation>
    </message>
    <message>
        <source>Could not remove token from Keychain.</source>
        <translation>Impossible de retirer le jeton du trousseau de clés.</translation>
    </message>
    <message>
        <source>Meeting ID</source>
        <translation>Identifiant de la réunion</translation>
    </message>
    <message>
        <source>Participants</source>
        <translation>Participants</translation>
    </message>
    <message>
        <source>Meeting summary</source>
        <translation>Résumé de la réunion</translation>
    </message>
    <message>
        <source>HF_TOKEN is saved in keychain.</source>
        <translation>HF_TOKEN est enregistré dans le trousseau de clés.</translation>
    </message>
    <message>
        <source>HF_TOKEN is not saved yet.</source>
        <translation>HF_TOKEN n’est pas encore enregistré.</translation>
    </message>
    <message>
        <source>Notion token is saved in keychain.</source>
        <translation>Le jeton Notion est enregistré dans le trousseau de clés.</translation>
    </message>
    <message>
        <source>Notion token is not saved yet.</source>
        <translation>Le jeton Notion n’est pas encore enregistré.</translation>
    </message>
    <message>
        <source>Install Ollama</source>
        <translation>Installer Ollama</translation>
    </message>
    <message>
        <source>Open Ollama, then click the refresh button.</source>
        <translation>Ouvrez Ollama, puis cliquez sur le bouton d’actualisation.</translation>
    </message>
    <message>
        <source>Not mapped</source>
        <translation>Sans correspondance</translation>
    </message>
    <message>
        <source>Fixed</source>
        <translation>Fixe</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>Plage</translation>
    </message>
    <message>
        <source>Ollama is running, model missing</source>
        <translation>Ollama est en marche, mais le modèle manque</translation>
    </message>
    <message>
        <source>Looking for Ollama and the recommended model.</source>
        <translation>Recherche d’Ollama et du modèle recommandé.</translation>
    </message>
    <message>
        <source>The qwen3:1.7b model is available.</source>
        <translation>Le modèle qwen3:1.7b est disponible.</translation>
    </message>
    <message>
        <source>Run the command below to install the recommended model.</source>
        <translation>Exécutez la commande ci-dessous pour installer le modèle recommandé.</translation>
    </message>
    <message>
        <source>Open Ollama, then check again.</source>
        <translation>Ouvrez Ollama, puis vérifiez à nouveau.</translation>
    </message>
    <message>
        <source>You can skip this step and still use transcription.</source>
        <translation>Vous pouvez passer cette étape&#xa0;: la transcription fonctionne aussi sans Ollama.</translation>
    </message>
    <message>
        <source>Click Check Again to refresh this status.</source>
        <translation>Cliquez sur «&#xa0;Vérifier à nouveau&#xa0;» pour actualiser cet état.</translation>
    </message>
    <message>
        <source>Hugging Face</source>
        <translation>Hugging Face</translation>
    </message>
    <message>
        <source>Ollama</source>
        <translation>Ollama</translation>
    </message>
    <message>
        <source>Local Tools</source>
        <translation>Outils locaux</translation>
    </message>
    <message>
        <source>Finish</source>
        <translation>Fin</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>Bienvenue</translation>
    </message>
    <message>
        <source>Skip Ollama</source>
        <translation>Passer Ollama</translation>
    </message>
    <message>
        <source>Skip for Now</source>
        <translation>Passer pour l’instant</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Prêt</translation>
    </message>
    <message>
        <source>Missing</source>
        <translation>Manquant</translation>
    </message>
    <message>
        <source>Hugging Face token is saved.</source>
        <translation>Le jeton Hugging Face est enregistré.</translation>
    </message>
    <message>
        <source>No Hugging Face token saved yet.</source>
        <translation>Aucun jeton Hugging Face n’est encore enregistré.</translation>
    </message>
    <message>
        <source>Could not save the token to Keychain.</source>
        <translation>Impossible d’enregistrer le jeton dans le trousseau de clés.</translation>
    </message>
    <message>
        <source>just now</source>
        <translation>à l’instant</translation>
    </message>
    <message>
        <source>%1m ago</source>
        <translation>il y a %1&#xa0;min</translation>
    </message>
    <message>
        <source>%1h ago</source>
        <translation>il y a %1&#xa0;h</translation>
    </message>
    <message>
        <source>%1d ago</source>
        <translation>il y a %1&#xa0;j</translation>
    </message>
    <message>
        <source>Update available</source>
        <translation>Mise à jour disponible</translation>
    </message>
    <message>
        <source>Speaker Profiles</source>
        <translation>Profils d’intervenants</translation>
    </message>
    <message>
        <source>Pause examples for %1</source>
        <translation>Interrompre les extraits de %1</translation>
    </message>
    <message>
        <source>Play examples for %1</source>
        <translation>Écouter des extraits de %1</translation>
    </message>
    <message>
        <source>Remove profile tag</source>
        <translation>Retirer l’étiquette du profil</translation>
    </message>
    <message>
        <source>Identified as %1</source>
        <translation>Identifié&#xa0;: %1</translation>
    </message>
    <message>
        <source>Accept</source>
        <translation>Accepter</translation>
    </message>
    <message>
        <source>Reject</source>
        <translation>Refuser</translation>
    </message>
    <message>
        <source>Suggested %1 · %2</source>
        <translation>Suggestion&#xa0;: %1 · %2</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Add speaker name</source>
        <translation>Nommer l’intervenant</translation>
    </message>
    <message>
        <source>Profiles</source>
        <translation>Profils</translation>
    </message>
    <message>
        <source>Create or attach a voice profile</source>
        <translation>Créer ou associer un profil vocal</translation>
    </message>
    <message>
        <source>Speaker context</source>
        <translation>Contexte de l’intervenant</translation>
    </message>
    <message>
        <source>Create Profile From This Voice</source>
        <translation>Créer un profil à partir de cette voix</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>Created date descending</source>
        <translation>Date de création, décroissante</translation>
    </message>
    <message>
        <source>Created date ascending</source>
        <translation>Date de création, croissante</translation>
    </message>
    <message>
        <source>Last seen descending</source>
        <translation>Dernière détection, décroissante</translation>
    </message>
    <message>
        <source>Last seen ascending</source>
        <translation>Dernière détection, croissante</translation>
    </message>
    <message>
        <source>Footprint size descending</source>
        <translation>Taille de l’empreinte, décroissante</translation>
    </message>
    <message>
        <source>Footprint size ascending</source>
        <translation>Taille de l’empreinte, croissante</translation>
    </message>
    <message>
        <source>Meetings used</source>
        <translation>Réunions utilisées</translation>
    </message>
    <message>
        <source>Speech duration used</source>
        <translation>Durée de parole utilisée</translation>
    </message>
    <message>
        <source>Last detection</source>
        <translation>Dernière détection</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Jamais</translation>
    </message>
    <message>
        <source>Latest suggestion score</source>
        <translation>Score de la dernière suggestion</translation>
    </message>
    <message>
        <source>Stored observations</source>
        <translation>Observations enregistrées</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Activée</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>Désactivée</translation>
    </message>
    <message>
        <source>Speakers</source>
        <translation>Intervenants</translation>
    </message>
    <message>
        <source>Create Speaker Profile</source>
        <translation>Créer un profil d’intervenant</translation>
    </message>
    <message>
        <source>Display name</source>
        <translation>Nom affiché</translation>
    </message>
    <message>
        <source>Choose the normalized display name for this voice profile.</source>
        <translation>Choisissez le nom d’usage à afficher pour ce profil vocal.</translation>
    </message>
    <message>
        <source>Create</source>
        <translation>Créer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Play meeting from %1</source>
        <translation>Écouter la réunion à partir de %1</translation>
    </message>
    <message>
        <source>Transcript</source>
        <translation>Transcription</translation>
    </message>
    <message>
        <source>Transcript copied</source>
        <translation>Transcription copiée</translation>
    </message>
    <message>
        <source>Copy transcript</source>
        <translation>Copier la transcription</translation>
    </message>
    <message>
        <source>Corvane</source>
        <translation>Corvane</translation>
    </message>
    <message>
        <source>Stop Recording</source>
        <translation>Arrêter l’enregistrement</translation>
    </message>
    <message>
        <source>Start Recording</source>
        <translation>Démarrer l’enregistrement</translation>
    </message>
    <message>
        <source>Pause Recording</source>
        <translation>Mettre l’enregistrement en pause</translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation>Reprendre l’enregistrement</translation>
    </message>
    <message>
        <source>Open App</source>
        <translation>Ouvrir l’application</translation>
    </message>
    <message>
        <source>Audio and video (%1)</source>
        <translation>Audio et vidéo (%1)</translation>
    </message>
    <message>
        <source>All files (%1)</source>
        <translation>Tous les fichiers (%1)</translation>
    </message>
</context>
<context>
    <name>ProcessingSettings</name>
    <message>
        <source>Processing</source>
        <translation>Traitement</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Langue</translation>
    </message>
    <message>
        <source>Detect speakers</source>
        <translation>Détecter les intervenants</translation>
    </message>
    <message>
        <source>Speaker labels disabled</source>
        <translation>Intervenants non distingués</translation>
    </message>
    <message>
        <source>Speaker count</source>
        <translation>Nombre d’intervenants</translation>
    </message>
    <message>
        <source>Detected automatically</source>
        <translation>Détecté automatiquement</translation>
    </message>
</context>
<context>
    <name>ProgressLine</name>
    <message>
        <source>%1%</source>
        <translation>%1&#x202f;%</translation>
    </message>
</context>
<context>
    <name>QuitDialogs</name>
    <message>
        <source>Quit while recording?</source>
        <translation>Quitter pendant l’enregistrement&#x202f;?</translation>
    </message>
    <message>
        <source>The recording is stopped and saved before Corvane quits. It can be transcribed later.</source>
        <translation>L’enregistrement est arrêté et sauvegardé avant que Corvane ne quitte. Il pourra être transcrit plus tard.</translation>
    </message>
    <message>
        <source>Stop Recording and Quit</source>
        <translation>Arrêter l’enregistrement et quitter</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Finishing the recording</source>
        <translation>Finalisation de l’enregistrement</translation>
    </message>
    <message>
        <source>Corvane quits when the recording is saved.</source>
        <translation>Corvane quittera dès que l’enregistrement sera sauvegardé.</translation>
    </message>
    <message>
        <source>Do Not Quit</source>
        <translation>Ne pas quitter</translation>
    </message>
    <message>
        <source>The recording could not be finished</source>
        <translation>L’enregistrement n’a pas pu être finalisé</translation>
    </message>
    <message>
        <source>Everything recorded so far is kept, and can be recovered when Corvane is started again.</source>
        <translation>Tout ce qui a été enregistré jusqu’ici est conservé et pourra être récupéré au prochain démarrage de Corvane.</translation>
    </message>
    <message>
        <source>Quit Anyway</source>
        <translation>Quitter quand même</translation>
    </message>
</context>
<context>
    <name>SettingsSection</name>
    <message>
        <source>About %1</source>
        <translation>À propos de %1</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Setup</source>
        <translation>Configuration</translation>
    </message>
    <message>
        <source>Reopens the first-run setup wizard for Hugging Face, Ollama, and local tools.</source>
        <translation>Rouvre l’assistant du premier démarrage pour Hugging Face, Ollama et les outils locaux.</translation>
    </message>
    <message>
        <source>Use this if you skipped onboarding, changed Macs, or want to recheck local dependencies.</source>
        <translation>À utiliser si vous avez passé la configuration initiale, changé d’ordinateur ou souhaitez revérifier les outils locaux.</translation>
    </message>
    <message>
        <source>Run Setup Wizard</source>
        <translation>Lancer l’assistant de configuration</translation>
    </message>
</context>
<context>
    <name>SetupFinishPage</name>
    <message>
        <source>Ready to Record</source>
        <translation>Prêt à enregistrer</translation>
    </message>
    <message>
        <source>Setup can be reopened from Settings at any time. If you skipped Hugging Face, diarization will ask for the token before it can run.</source>
        <translation>Vous pouvez rouvrir la configuration à tout moment depuis les paramètres. Si vous avez passé l’étape Hugging Face, la diarisation demandera le jeton avant de pouvoir fonctionner.</translation>
    </message>
    <message>
        <source>Record or import audio</source>
        <translation>Enregistrer ou importer de l’audio</translation>
    </message>
    <message>
        <source>Use the controls at the bottom of the dashboard.</source>
        <translation>Utilisez les commandes au bas de la fenêtre.</translation>
    </message>
    <message>
        <source>Process locally</source>
        <translation>Traiter sur cet ordinateur</translation>
    </message>
    <message>
        <source>The worker uses the tools checked in setup.</source>
        <translation>Le programme de traitement utilise les outils vérifiés dans la configuration.</translation>
    </message>
    <message>
        <source>Edit speaker names</source>
        <translation>Modifier les noms des intervenants</translation>
    </message>
    <message>
        <source>Speaker labels can be renamed after processing.</source>
        <translation>Les intervenants peuvent être renommés après le traitement.</translation>
    </message>
</context>
<context>
    <name>SetupFooterBar</name>
    <message>
        <source>Back</source>
        <translation>Précédent</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuer</translation>
    </message>
    <message>
        <source>Finish Setup</source>
        <translation>Terminer la configuration</translation>
    </message>
</context>
<context>
    <name>SetupHuggingFacePage</name>
    <message>
        <source>Hugging Face</source>
        <translation>Hugging Face</translation>
    </message>
    <message>
        <source>Speaker diarization detects who spoke when, so the transcript can be split into speaker labels such as SPEAKER_00 and SPEAKER_01.</source>
        <translation>La diarisation détecte qui a parlé et quand, afin de répartir la transcription entre des intervenants tels que SPEAKER_00 et SPEAKER_01.</translation>
    </message>
    <message>
        <source>To use diarization, create a free Hugging Face account and a token with Read access. Corvane stores the token in macOS Keychain.</source>
        <translation>Pour utiliser la diarisation, créez un compte Hugging Face gratuit et un jeton avec l’accès «&#xa0;Read&#xa0;». Corvane conserve le jeton dans le trousseau de clés du système.</translation>
    </message>
    <message>
        <source>Before the token works, you must also open the pyannote model page while signed in and accept its model agreement.</source>
        <translation>Pour que le jeton fonctionne, vous devez aussi ouvrir la page du modèle pyannote en étant connecté et accepter ses conditions d’utilisation.</translation>
    </message>
    <message>
        <source>Create Account</source>
        <translation>Créer un compte</translation>
    </message>
    <message>
        <source>Accept Model Agreement</source>
        <translation>Accepter les conditions</translation>
    </message>
    <message>
        <source>Create Read Token</source>
        <translation>Créer un jeton «&#xa0;Read&#xa0;»</translation>
    </message>
    <message>
        <source>1. Sign in or create an account</source>
        <translation>1. Connectez-vous ou créez un compte</translation>
    </message>
    <message>
        <source>Use the Hugging Face account page.</source>
        <translation>Utilisez la page de compte Hugging Face.</translation>
    </message>
    <message>
        <source>2. Accept the model agreement</source>
        <translation>2. Acceptez les conditions du modèle</translation>
    </message>
    <message>
        <source>Open pyannote/speaker-diarization-community-1 and accept access to the model files.</source>
        <translation>Ouvrez pyannote/speaker-diarization-community-1 et acceptez l’accès aux fichiers du modèle.</translation>
    </message>
    <message>
        <source>3. Create a token</source>
        <translation>3. Créez un jeton</translation>
    </message>
    <message>
        <source>A Hugging Face token with Read access is enough for diarization.</source>
        <translation>Un jeton Hugging Face avec l’accès «&#xa0;Read&#xa0;» suffit pour la diarisation.</translation>
    </message>
    <message>
        <source>4. Paste it below</source>
        <translation>4. Collez-le ci-dessous</translation>
    </message>
    <message>
        <source>The token is stored in macOS Keychain.</source>
        <translation>Le jeton est conservé dans le trousseau de clés du système.</translation>
    </message>
    <message>
        <source>hf_...</source>
        <translation>hf_…</translation>
    </message>
    <message>
        <source>Hugging Face token</source>
        <translation>Jeton Hugging Face</translation>
    </message>
    <message>
        <source>Save Token</source>
        <translation>Enregistrer le jeton</translation>
    </message>
    <message>
        <source>Skip for Now</source>
        <translation>Passer pour l’instant</translation>
    </message>
</context>
<context>
    <name>SetupOllamaPage</name>
    <message>
        <source>Ollama</source>
        <translation>Ollama</translation>
    </message>
    <message>
        <source>Ollama is optional. Transcription and diarization work without it. If enabled, Corvane can use a small local model for richer private meeting summaries and speaker hints.</source>
        <translation>Ollama est facultatif. La transcription et la diarisation fonctionnent sans lui. S’il est activé, Corvane peut utiliser un petit modèle local pour enrichir les résumés privés des réunions et les indices sur les intervenants.</translation>
    </message>
    <message>
        <source>Install Ollama only if you want those richer local summaries. The recommended model is qwen3:1.7b.</source>
        <translation>N’installez Ollama que si vous souhaitez ces résumés locaux enrichis. Le modèle recommandé est qwen3:1.7b.</translation>
    </message>
    <message>
        <source>Command to install the model</source>
        <translation>Commande d’installation du modèle</translation>
    </message>
    <message>
        <source>Download Ollama</source>
        <translation>Télécharger Ollama</translation>
    </message>
    <message>
        <source>Check Again</source>
        <translation>Vérifier à nouveau</translation>
    </message>
    <message>
        <source>Use Ollama for richer speaker hints and summaries</source>
        <translation>Utiliser Ollama pour enrichir les résumés et les indices sur les intervenants</translation>
    </message>
</context>
<context>
    <name>SetupStepList</name>
    <message>
        <source>Setup</source>
        <translation>Configuration</translation>
    </message>
    <message>
        <source>%1, done</source>
        <translation>%1, terminé</translation>
    </message>
</context>
<context>
    <name>SetupToolsPage</name>
    <message>
        <source>Local Tools</source>
        <translation>Outils locaux</translation>
    </message>
    <message>
        <source>Corvane processes audio locally. These tools are installed once and reused by the app.</source>
        <translation>Corvane traite l’audio sur cet ordinateur. Ces outils s’installent une seule fois et servent ensuite à l’application.</translation>
    </message>
    <message>
        <source>The worker that comes with this version needs none of them: meetings can be processed without. They serve a worker of your own.</source>
        <translation>Le programme de traitement fourni avec cette version n’a besoin d’aucun d’eux&#xa0;: les réunions peuvent être traitées sans. Ils servent à votre propre programme de traitement.</translation>
    </message>
    <message>
        <source>Homebrew is not installed. Install Homebrew first, then come back here and click Check Again.</source>
        <translation>Homebrew n’est pas installé. Installez d’abord Homebrew, puis revenez ici et cliquez sur «&#xa0;Vérifier à nouveau&#xa0;».</translation>
    </message>
    <message>
        <source>Open Homebrew</source>
        <translation>Ouvrir Homebrew</translation>
    </message>
    <message>
        <source>Installing...</source>
        <translation>Installation…</translation>
    </message>
    <message>
        <source>Install Missing Tools</source>
        <translation>Installer les outils manquants</translation>
    </message>
    <message>
        <source>Check Again</source>
        <translation>Vérifier à nouveau</translation>
    </message>
    <message>
        <source>Output of the installation</source>
        <translation>Messages de l’installation</translation>
    </message>
</context>
<context>
    <name>SetupWelcomePage</name>
    <message>
        <source>Welcome to Corvane</source>
        <translation>Bienvenue dans Corvane</translation>
    </message>
    <message>
        <source>This setup takes care of the few things macOS cannot infer from the app bundle: speaker diarization access, optional local summaries, and local transcription tools.</source>
        <translation>Cette configuration règle les quelques points que le système ne peut pas déduire de l’application&#xa0;: l’accès à la diarisation, les résumés locaux facultatifs et les outils locaux de transcription.</translation>
    </message>
    <message>
        <source>Hugging Face</source>
        <translation>Hugging Face</translation>
    </message>
    <message>
        <source>Required only when speaker diarization is enabled.</source>
        <translation>Nécessaire uniquement si la diarisation est activée.</translation>
    </message>
    <message>
        <source>Ollama</source>
        <translation>Ollama</translation>
    </message>
    <message>
        <source>Optional. Adds richer private summaries and speaker hints.</source>
        <translation>Facultatif. Enrichit les résumés privés et les indices sur les intervenants.</translation>
    </message>
    <message>
        <source>Local tools</source>
        <translation>Outils locaux</translation>
    </message>
    <message>
        <source>Python, uv, ffmpeg, and whispermlx for local processing.</source>
        <translation>Python, uv, ffmpeg et whispermlx pour le traitement local.</translation>
    </message>
</context>
<context>
    <name>SetupWizardView</name>
    <message>
        <source>Setup</source>
        <translation>Configuration</translation>
    </message>
</context>
<context>
    <name>ShortcutsSheet</name>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation>Raccourcis clavier</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>Sidebar</name>
    <message>
        <source>Meetings</source>
        <translation>Réunions</translation>
    </message>
    <message>
        <source>Keyboard shortcuts</source>
        <translation>Raccourcis clavier</translation>
    </message>
    <message>
        <source>Refresh meetings</source>
        <translation>Actualiser les réunions</translation>
    </message>
    <message>
        <source>Meeting</source>
        <translation>Réunion</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Delete meeting?</source>
        <translation>Supprimer la réunion&#x202f;?</translation>
    </message>
    <message>
        <source>This removes this meeting&apos;s processing runs and its local app recording when available.</source>
        <translation>Les traitements de cette réunion seront supprimés, ainsi que son enregistrement local s’il existe.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation>Afficher dans le gestionnaire de fichiers</translation>
    </message>
</context>
<context>
    <name>SpeakerProfileRow</name>
    <message>
        <source>Disable profile</source>
        <translation>Désactiver le profil</translation>
    </message>
    <message>
        <source>Enable profile</source>
        <translation>Activer le profil</translation>
    </message>
    <message>
        <source>Display name</source>
        <translation>Nom affiché</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>Notes</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
</context>
<context>
    <name>SpeakerProfilesHeader</name>
    <message>
        <source>Speaker Profiles</source>
        <translation>Profils d’intervenants</translation>
    </message>
    <message>
        <source>Voice profiles are sensitive data. Corvane does not store raw audio in profiles: only local numeric vectors are kept to suggest speaker identification. You can disable this feature or delete all profiles at any time.</source>
        <translation>Les profils vocaux sont des données sensibles. Corvane n’y conserve aucun son&#xa0;: seuls des vecteurs numériques locaux sont gardés pour suggérer l’identité des intervenants. Vous pouvez désactiver cette fonction ou supprimer tous les profils à tout moment.</translation>
    </message>
    <message>
        <source>Voice profile matching</source>
        <translation>Reconnaissance par profil vocal</translation>
    </message>
    <message>
        <source>Global threshold</source>
        <translation>Seuil global</translation>
    </message>
    <message>
        <source>New Profile</source>
        <translation>Nouveau profil</translation>
    </message>
    <message>
        <source>Display name</source>
        <translation>Nom affiché</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>Notes</translation>
    </message>
    <message>
        <source>Create profile</source>
        <translation>Créer le profil</translation>
    </message>
    <message>
        <source>Profiles</source>
        <translation>Profils</translation>
    </message>
    <message>
        <source>Sort</source>
        <translation>Trier</translation>
    </message>
    <message>
        <source>Sort speaker profiles</source>
        <translation>Trier les profils d’intervenants</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>Tout supprimer</translation>
    </message>
    <message>
        <source>No Speaker Profiles</source>
        <translation>Aucun profil d’intervenant</translation>
    </message>
</context>
<context>
    <name>SpeakerProfilesView</name>
    <message>
        <source>Profiles</source>
        <translation>Profils</translation>
    </message>
    <message>
        <source>Delete speaker profile?</source>
        <translation>Supprimer le profil d’intervenant&#x202f;?</translation>
    </message>
    <message>
        <source>This removes the local voice vectors and matching history attached to this profile.</source>
        <translation>Les vecteurs vocaux locaux et l’historique de reconnaissance associés à ce profil seront supprimés.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Delete all voice profiles?</source>
        <translation>Supprimer tous les profils vocaux&#x202f;?</translation>
    </message>
    <message>
        <source>This removes all local voice profiles, stored vectors, and matching history.</source>
        <translation>Tous les profils vocaux locaux, les vecteurs enregistrés et l’historique de reconnaissance seront supprimés.</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>Tout supprimer</translation>
    </message>
</context>
<context>
    <name>StatusCard</name>
    <message>
        <source>Processing progress</source>
        <translation>Progression du traitement</translation>
    </message>
</context>
<context>
    <name>Stepper</name>
    <message>
        <source>Fewer</source>
        <translation>Moins</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Plus</translation>
    </message>
</context>
<context>
    <name>TokenRow</name>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
</context>
<context>
    <name>UpdateSettings</name>
    <message>
        <source>Updates</source>
        <translation>Mises à jour</translation>
    </message>
    <message>
        <source>Checks whether a newer Corvane DMG is available to download.</source>
        <translation>Vérifie si une version plus récente de Corvane est disponible au téléchargement.</translation>
    </message>
    <message>
        <source>Check automatically</source>
        <translation>Vérifier automatiquement</translation>
    </message>
    <message>
        <source>Check for Updates</source>
        <translation>Rechercher des mises à jour</translation>
    </message>
    <message>
        <source>Download Update</source>
        <translation>Télécharger la mise à jour</translation>
    </message>
    <message>
        <source>Release Notes</source>
        <translation>Notes de version</translation>
    </message>
</context>
<context>
    <name>UserText</name>
    <message>
        <source>Failed to play audio: %1</source>
        <translation>Échec de la lecture audio&#xa0;: %1</translation>
    </message>
    <message>
        <source>Failed to play examples: %1</source>
        <translation>Échec de la lecture des extraits&#xa0;: %1</translation>
    </message>
    <message>
        <source>“%1” is not the name of a meeting</source>
        <translation>«&#xa0;%1&#xa0;» n’est pas le nom d’une réunion</translation>
    </message>
    <message>
        <source>Failed to import audio: %1</source>
        <translation>Échec de l’importation audio&#xa0;: %1</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Annulé</translation>
    </message>
    <message>
        <source>Imported %1</source>
        <translation>%1 importé</translation>
    </message>
    <message>
        <source>Meeting in progress</source>
        <translation>Réunion en cours</translation>
    </message>
    <message>
        <source>Imported</source>
        <translation>Importé</translation>
    </message>
    <message>
        <source>Failed to rename: %1</source>
        <translation>Échec du renommage&#xa0;: %1</translation>
    </message>
    <message>
        <source>Renamed</source>
        <translation>Réunion renommée</translation>
    </message>
    <message>
        <source>Failed to delete: %1: %2</source>
        <translation>Échec de la suppression&#xa0;: %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>Deleted</source>
        <translation>Réunion supprimée</translation>
    </message>
    <message>
        <source>Connect Notion first</source>
        <translation>Connectez d’abord Notion</translation>
    </message>
    <message>
        <source>Failed to read Notion token: %1</source>
        <translation>Échec de la lecture du jeton Notion&#xa0;: %1</translation>
    </message>
    <message>
        <source>Failed to save Notion token: %1</source>
        <translation>Échec de l’enregistrement du jeton Notion&#xa0;: %1</translation>
    </message>
    <message>
        <source>Failed to remove Notion token: %1</source>
        <translation>Échec du retrait du jeton Notion&#xa0;: %1</translation>
    </message>
    <message>
        <source>Notion connected</source>
        <translation>Notion connecté</translation>
    </message>
    <message>
        <source>Notion disconnected</source>
        <translation>Notion déconnecté</translation>
    </message>
    <message>
        <source>Enter a Notion database URL</source>
        <translation>Saisissez l’adresse d’une base de données Notion</translation>
    </message>
    <message>
        <source>Fetching Notion database</source>
        <translation>Récupération de la base de données Notion</translation>
    </message>
    <message>
        <source>Failed to fetch Notion database: %1</source>
        <translation>Échec de la récupération de la base de données Notion&#xa0;: %1</translation>
    </message>
    <message>
        <source>Notion database ready</source>
        <translation>Base de données Notion prête</translation>
    </message>
    <message>
        <source>No transcript to sync</source>
        <translation>Aucune transcription à synchroniser</translation>
    </message>
    <message>
        <source>Notion sync failed: %1</source>
        <translation>Échec de la synchronisation avec Notion&#xa0;: %1</translation>
    </message>
    <message>
        <source>Choose a Notion database</source>
        <translation>Choisissez une base de données Notion</translation>
    </message>
    <message>
        <source>Syncing to Notion</source>
        <translation>Synchronisation avec Notion</translation>
    </message>
    <message>
        <source>Existing synced page</source>
        <translation>Page déjà synchronisée</translation>
    </message>
    <message>
        <source>Notion page already exists</source>
        <translation>La page Notion existe déjà</translation>
    </message>
    <message>
        <source>Synced to Notion</source>
        <translation>Synchronisé avec Notion</translation>
    </message>
    <message>
        <source>Playing %1 from %2</source>
        <translation>Lecture de %1 à partir de %2</translation>
    </message>
    <message>
        <source>Playing examples for %1</source>
        <translation>Lecture des extraits de %1</translation>
    </message>
    <message>
        <source>corvane-worker not found</source>
        <translation>corvane-worker introuvable</translation>
    </message>
    <message>
        <source>Failed to launch worker: %1</source>
        <translation>Échec du lancement du traitement&#xa0;: %1</translation>
    </message>
    <message>
        <source>Processing %1</source>
        <translation>Traitement de %1</translation>
    </message>
    <message>
        <source>Speaker profile name is required</source>
        <translation>Le profil d’intervenant doit avoir un nom</translation>
    </message>
    <message>
        <source>%1 cannot be read</source>
        <translation>%1 est illisible</translation>
    </message>
    <message>
        <source>Failed to load speaker profiles: %1</source>
        <translation>Échec du chargement des profils d’intervenants&#xa0;: %1</translation>
    </message>
    <message>
        <source>Failed to create speaker profile: %1</source>
        <translation>Échec de la création du profil d’intervenant&#xa0;: %1</translation>
    </message>
    <message>
        <source>Speaker profile created</source>
        <translation>Profil d’intervenant créé</translation>
    </message>
    <message>
        <source>Failed to update speaker profile: %1</source>
        <translation>Échec de la modification du profil d’intervenant&#xa0;: %1</translation>
    </message>
    <message>
        <source>Speaker profile updated</source>
        <translation>Profil d’intervenant modifié</translation>
    </message>
    <message>
        <source>Speaker profile enabled</source>
        <translation>Profil d’intervenant activé</translation>
    </message>
    <message>
        <source>Speaker profile disabled</source>
        <translation>Profil d’intervenant désactivé</translation>
    </message>
    <message>
        <source>Failed to delete speaker profile: %1</source>
        <translation>Échec de la suppression du profil d’intervenant&#xa0;: %1</translation>
    </message>
    <message>
        <source>Speaker profile deleted</source>
        <translation>Profil d’intervenant supprimé</translation>
    </message>
    <message>
        <source>Failed to delete speaker profiles: %1</source>
        <translation>Échec de la suppression des profils d’intervenants&#xa0;: %1</translation>
    </message>
    <message>
        <source>All speaker profiles deleted</source>
        <translation>Tous les profils d’intervenants ont été supprimés</translation>
    </message>
    <message>
        <source>Failed to update matching setting: %1</source>
        <translation>Échec de la modification de la reconnaissance&#xa0;: %1</translation>
    </message>
    <message>
        <source>Voice profile matching enabled</source>
        <translation>Reconnaissance par profil vocal activée</translation>
    </message>
    <message>
        <source>Voice profile matching disabled</source>
        <translation>Reconnaissance par profil vocal désactivée</translation>
    </message>
    <message>
        <source>Failed to update matching threshold: %1</source>
        <translation>Échec de la modification du seuil de reconnaissance&#xa0;: %1</translation>
    </message>
    <message>
        <source>Failed to update profile tags in a meeting: %1: %2</source>
        <translation>Échec de la mise à jour des étiquettes de profil dans une réunion&#xa0;: %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Enregistrement en cours</translation>
    </message>
    <message>
        <source>Failed to start recording: %1</source>
        <translation>Échec du démarrage de l’enregistrement&#xa0;: %1</translation>
    </message>
    <message>
        <source>Recording microphone only; system audio failed: %1</source>
        <translation>Seul le microphone est enregistré&#x202f;; échec du son du système&#xa0;: %1</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>En pause</translation>
    </message>
    <message>
        <source>Failed to pause recording: %1</source>
        <translation>Échec de la mise en pause de l’enregistrement&#xa0;: %1</translation>
    </message>
    <message>
        <source>Failed to resume recording: %1</source>
        <translation>Échec de la reprise de l’enregistrement&#xa0;: %1</translation>
    </message>
    <message>
        <source>Failed to stop recording: %1</source>
        <translation>Échec de l’arrêt de l’enregistrement&#xa0;: %1</translation>
    </message>
    <message>
        <source>Recorded %1</source>
        <translation>%1 enregistré</translation>
    </message>
    <message>
        <source>Failed to save speaker names: %1</source>
        <translation>Échec de l’enregistrement des noms des intervenants&#xa0;: %1</translation>
    </message>
    <message>
        <source>Speaker names saved automatically</source>
        <translation>Noms des intervenants enregistrés automatiquement</translation>
    </message>
    <message>
        <source>Failed to save speaker profile matches: %1</source>
        <translation>Échec de l’enregistrement des correspondances de profils&#xa0;: %1</translation>
    </message>
    <message>
        <source>Speaker profile suggestion rejected</source>
        <translation>Suggestion de profil refusée</translation>
    </message>
    <message>
        <source>Voice removed from %1</source>
        <translation>Voix retirée de %1</translation>
    </message>
    <message>
        <source>Profile tag removed</source>
        <translation>Étiquette du profil retirée</translation>
    </message>
    <message>
        <source>Could not remove profile voice: %1</source>
        <translation>Impossible de retirer la voix du profil&#xa0;: %1</translation>
    </message>
    <message>
        <source>Failed to remove profile voice: %1</source>
        <translation>Échec du retrait de la voix du profil&#xa0;: %1</translation>
    </message>
    <message>
        <source>Configure an update manifest URL first.</source>
        <translation>Configurez d’abord l’adresse du manifeste de mise à jour.</translation>
    </message>
    <message>
        <source>The update manifest URL must be an HTTP or HTTPS URL.</source>
        <translation>L’adresse du manifeste de mise à jour doit être une adresse HTTP ou HTTPS.</translation>
    </message>
    <message>
        <source>Failed to check existing voice profile: %1</source>
        <translation>Échec de la vérification du profil vocal existant&#xa0;: %1</translation>
    </message>
    <message>
        <source>%1 is already linked to %2 for this meeting</source>
        <translation>%1 est déjà associé à %2 pour cette réunion</translation>
    </message>
    <message>
        <source>Extracting voice for %1</source>
        <translation>Extraction de la voix pour %1</translation>
    </message>
    <message>
        <source>Extracting voice profile for %1</source>
        <translation>Extraction du profil vocal de %1</translation>
    </message>
    <message>
        <source>Voice added to %1</source>
        <translation>Voix ajoutée à %1</translation>
    </message>
    <message>
        <source>Voice profile update failed: %1</source>
        <translation>Échec de la mise à jour du profil vocal&#xa0;: %1</translation>
    </message>
    <message>
        <source>the profile has been deleted</source>
        <translation>le profil a été supprimé</translation>
    </message>
    <message>
        <source>No speaker profile suggestions</source>
        <translation>Aucune suggestion de profil</translation>
    </message>
    <message>
        <source>Matching speaker profiles</source>
        <translation>Comparaison avec les profils d’intervenants</translation>
    </message>
    <message>
        <source>Speaker profile suggestions ready</source>
        <translation>Suggestions de profils prêtes</translation>
    </message>
    <message>
        <source>Idle</source>
        <translation>Inactif</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1&#xa0;: %2</translation>
    </message>
    <message>
        <source>Invalid argument</source>
        <translation>Argument non valable</translation>
    </message>
    <message>
        <source>Not a directory</source>
        <translation>N’est pas un dossier</translation>
    </message>
    <message>
        <source>expected a string</source>
        <translation>chaîne de caractères attendue</translation>
    </message>
    <message>
        <source>expected a number</source>
        <translation>nombre attendu</translation>
    </message>
    <message>
        <source>expected an integer</source>
        <translation>nombre entier attendu</translation>
    </message>
    <message>
        <source>expected a boolean</source>
        <translation>booléen attendu</translation>
    </message>
    <message>
        <source>expected an object</source>
        <translation>objet attendu</translation>
    </message>
    <message>
        <source>expected an array</source>
        <translation>tableau attendu</translation>
    </message>
    <message>
        <source>missing key “%1”</source>
        <translation>clé «&#xa0;%1&#xa0;» manquante</translation>
    </message>
    <message>
        <source>not valid JSON: %1</source>
        <translation>JSON non valable&#xa0;: %1</translation>
    </message>
    <message>
        <source>expected a UUID</source>
        <translation>UUID attendu</translation>
    </message>
    <message>
        <source>current app</source>
        <translation>l’application active</translation>
    </message>
    <message>
        <source>Record this meeting?</source>
        <translation>Enregistrer cette réunion&#x202f;?</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>Pas maintenant</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>%1 detected in %2.</source>
        <translation>%1 détecté dans %2.</translation>
    </message>
    <message>
        <source>multiple choices</source>
        <translation>plusieurs choix possibles</translation>
    </message>
    <message>
        <source>moved permanently</source>
        <translation>déplacé définitivement</translation>
    </message>
    <message>
        <source>found</source>
        <translation>trouvé</translation>
    </message>
    <message>
        <source>see other</source>
        <translation>voir ailleurs</translation>
    </message>
    <message>
        <source>not modified</source>
        <translation>non modifié</translation>
    </message>
    <message>
        <source>temporarily redirected</source>
        <translation>redirigé temporairement</translation>
    </message>
    <message>
        <source>permanently redirected</source>
        <translation>redirigé définitivement</translation>
    </message>
    <message>
        <source>bad request</source>
        <translation>requête incorrecte</translation>
    </message>
    <message>
        <source>unauthorized</source>
        <translation>non autorisé</translation>
    </message>
    <message>
        <source>payment required</source>
        <translation>paiement exigé</translation>
    </message>
    <message>
        <source>forbidden</source>
        <translation>accès interdit</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>introuvable</translation>
    </message>
    <message>
        <source>method not allowed</source>
        <translation>méthode non autorisée</translation>
    </message>
    <message>
        <source>unacceptable</source>
        <translation>non acceptable</translation>
    </message>
    <message>
        <source>proxy authentication required</source>
        <translation>authentification exigée par le serveur mandataire</translation>
    </message>
    <message>
        <source>request timed out</source>
        <translation>délai de la requête dépassé</translation>
    </message>
    <message>
        <source>conflict</source>
        <translation>conflit</translation>
    </message>
    <message>
        <source>no longer exists</source>
        <translation>n’existe plus</translation>
    </message>
    <message>
        <source>length required</source>
        <translation>longueur exigée</translation>
    </message>
    <message>
        <source>precondition failed</source>
        <translation>condition préalable non remplie</translation>
    </message>
    <message>
        <source>request too large</source>
        <translation>requête trop volumineuse</translation>
    </message>
    <message>
        <source>requested URL too long</source>
        <translation>adresse demandée trop longue</translation>
    </message>
    <message>
        <source>unsupported media type</source>
        <translation>type de contenu non pris en charge</translation>
    </message>
    <message>
        <source>requested range not satisfiable</source>
        <translation>plage demandée impossible à fournir</translation>
    </message>
    <message>
        <source>expectation failed</source>
        <translation>attente non satisfaite</translation>
    </message>
    <message>
        <source>unprocessable content</source>
        <translation>contenu impossible à traiter</translation>
    </message>
    <message>
        <source>too many requests</source>
        <translation>trop de requêtes</translation>
    </message>
    <message>
        <source>internal server error</source>
        <translation>erreur interne du serveur</translation>
    </message>
    <message>
        <source>unimplemented</source>
        <translation>non pris en charge par le serveur</translation>
    </message>
    <message>
        <source>bad gateway</source>
        <translation>mauvaise passerelle</translation>
    </message>
    <message>
        <source>service unavailable</source>
        <translation>service indisponible</translation>
    </message>
    <message>
        <source>gateway timed out</source>
        <translation>délai de la passerelle dépassé</translation>
    </message>
    <message>
        <source>unsupported version</source>
        <translation>version non prise en charge</translation>
    </message>
    <message>
        <source>informational</source>
        <translation>information</translation>
    </message>
    <message>
        <source>no error</source>
        <translation>aucune erreur</translation>
    </message>
    <message>
        <source>redirected</source>
        <translation>redirigé</translation>
    </message>
    <message>
        <source>client error</source>
        <translation>erreur du client</translation>
    </message>
    <message>
        <source>server error</source>
        <translation>erreur du serveur</translation>
    </message>
    <message>
        <source>no valid status</source>
        <translation>code d’état non valable</translation>
    </message>
    <message>
        <source>local model</source>
        <translation>un modèle local</translation>
    </message>
    <message>
        <source>Speaker context generated with %1.</source>
        <translation>Contexte des intervenants produit avec %1.</translation>
    </message>
    <message>
        <source>Using transcript snippets. Ollama unavailable: %1</source>
        <translation>Extraits de la transcription utilisés. Ollama indisponible&#xa0;: %1</translation>
    </message>
    <message>
        <source>Using transcript snippets.</source>
        <translation>Extraits de la transcription utilisés.</translation>
    </message>
    <message>
        <source>No such file or directory</source>
        <translation>Aucun fichier ou dossier de ce nom</translation>
    </message>
    <message>
        <source>Not a file</source>
        <translation>N’est pas un fichier</translation>
    </message>
    <message>
        <source>recording</source>
        <translation>en cours</translation>
    </message>
    <message>
        <source>paused</source>
        <translation>en pause</translation>
    </message>
    <message>
        <source>recorded</source>
        <translation>enregistré</translation>
    </message>
    <message>
        <source>Recorded</source>
        <translation>Enregistré</translation>
    </message>
    <message>
        <source>imported</source>
        <translation>importé</translation>
    </message>
    <message>
        <source>pending</source>
        <translation>en attente</translation>
    </message>
    <message>
        <source>Pending</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>running</source>
        <translation>en traitement</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>Traitement en cours</translation>
    </message>
    <message>
        <source>completed</source>
        <translation>terminé</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>échec</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Échec</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>annulé</translation>
    </message>
    <message>
        <source>Existing meeting page</source>
        <translation>Page de réunion existante</translation>
    </message>
    <message>
        <source>Mapped Notion column not found: %1</source>
        <translation>Colonne Notion associée introuvable&#xa0;: %1</translation>
    </message>
    <message>
        <source>Mapped Notion column %1 must be rich text or multi-select, not %2</source>
        <translation>La colonne Notion associée %1 doit être de type texte enrichi ou sélection multiple, et non %2</translation>
    </message>
    <message>
        <source>Invalid Notion database URL</source>
        <translation>Adresse de base de données Notion non valable</translation>
    </message>
    <message>
        <source>%1: the disk took no more</source>
        <translation>%1&#xa0;: le disque n’accepte plus de données</translation>
    </message>
    <message>
        <source>noChunks</source>
        <translation>aucun segment audio</translation>
    </message>
    <message>
        <source>unreadableChunk(%1)</source>
        <translation>segment audio illisible (%1)</translation>
    </message>
    <message>
        <source>No audio files were available to mix.</source>
        <translation>Aucun fichier audio à mixer.</translation>
    </message>
    <message>
        <source>Audio mix failed: %1</source>
        <translation>Échec du mixage audio&#xa0;: %1</translation>
    </message>
    <message>
        <source>the disk took no more.</source>
        <translation>le disque n’accepte plus de données.</translation>
    </message>
    <message>
        <source>the microphone</source>
        <translation>microphone</translation>
    </message>
    <message>
        <source>system audio</source>
        <translation>son du système</translation>
    </message>
    <message>
        <source>Recording: %1 changed to %2</source>
        <translation>Enregistrement&#xa0;: nouvelle source (%1)&#xa0;: %2</translation>
    </message>
    <message>
        <source>Recording: %1 back: %2</source>
        <translation>Enregistrement&#xa0;: source retrouvée (%1)&#xa0;: %2</translation>
    </message>
    <message>
        <source>Recording: %1 lost</source>
        <translation>Enregistrement&#xa0;: source perdue (%1)</translation>
    </message>
    <message>
        <source>Recording: %1 %2</source>
        <translation>Enregistrement&#xa0;: %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>Recording is losing the sound of %1: the disk is full or cannot be written. What was recorded until now is kept; make room to go on.</source>
        <translation>L’enregistrement perd du son (%1)&#xa0;: le disque est plein ou protégé en écriture. Ce qui a été enregistré jusqu’ici est conservé&#x202f;; libérez de la place pour continuer.</translation>
    </message>
    <message>
        <source>Recording: the sound of %1 is written again</source>
        <translation>Enregistrement&#xa0;: le son est de nouveau écrit (%1)</translation>
    </message>
    <message>
        <source>Recording: %1 is back</source>
        <translation>Enregistrement&#xa0;: source de nouveau disponible (%1)</translation>
    </message>
    <message>
        <source>Recording without %1: its device is gone. Silence is recorded until it is back.</source>
        <translation>L’enregistrement a perdu une source (%1)&#xa0;: son périphérique a disparu. Du silence est enregistré jusqu’à son retour.</translation>
    </message>
    <message>
        <source>Recording: the sound server did not deliver %1 for %2 seconds</source>
        <translation>Enregistrement&#xa0;: le serveur de son n’a rien transmis pendant %2&#xa0;s (%1)</translation>
    </message>
    <message>
        <source>No sound comes from %1. Check that it is not muted.</source>
        <translation>Aucun son reçu (%1). Vérifiez que le son n’est pas coupé.</translation>
    </message>
    <message>
        <source>notRecording</source>
        <translation>aucun enregistrement en cours</translation>
    </message>
    <message>
        <source>this meeting is being recorded by another process</source>
        <translation>cette réunion est déjà enregistrée par un autre processus</translation>
    </message>
    <message>
        <source>%1 cannot be written; the disk may be full</source>
        <translation>impossible d’écrire %1&#x202f;; le disque est peut-être plein</translation>
    </message>
    <message>
        <source>Microphone only</source>
        <translation>Microphone seul</translation>
    </message>
    <message>
        <source>Microphone + system audio</source>
        <translation>Microphone + son du système</translation>
    </message>
    <message>
        <source>System audio capture requires macOS 14.2 or newer.</source>
        <translation>La capture du son du système nécessite macOS 14.2 ou une version plus récente.</translation>
    </message>
    <message>
        <source>System audio format is unavailable.</source>
        <translation>Le format du son du système n’est pas disponible.</translation>
    </message>
    <message>
        <source>System audio recorder is not recording.</source>
        <translation>Le son du système n’est pas en cours d’enregistrement.</translation>
    </message>
    <message>
        <source>%1 failed with Core Audio status %2.</source>
        <translation>%1 a échoué avec le code d’état Core Audio %2.</translation>
    </message>
    <message>
        <source>To install the packages yourself, run in a terminal: %1</source>
        <translation>Pour installer les paquets vous-même, exécutez dans un terminal&#xa0;: %1</translation>
    </message>
    <message>
        <source>uv is not among the packages of %1. See https://docs.astral.sh/uv/ for how to get it into /usr/local/bin, then click Check Again.</source>
        <translation>uv ne fait pas partie des paquets de %1. Consultez https://docs.astral.sh/uv/ pour l’installer dans /usr/local/bin, puis cliquez sur «&#xa0;Vérifier à nouveau&#xa0;».</translation>
    </message>
    <message>
        <source>whispermlx verified</source>
        <translation>whispermlx vérifié</translation>
    </message>
    <message>
        <source>Starting dependency setup...</source>
        <translation>Démarrage de l’installation des outils…</translation>
    </message>
    <message>
        <source>Checking Ollama</source>
        <translation>Vérification d’Ollama</translation>
    </message>
    <message>
        <source>Ollama is ready</source>
        <translation>Ollama est prêt</translation>
    </message>
    <message>
        <source>Ollama is running</source>
        <translation>Ollama est en marche</translation>
    </message>
    <message>
        <source>Ollama is installed</source>
        <translation>Ollama est installé</translation>
    </message>
    <message>
        <source>Ollama is not installed</source>
        <translation>Ollama n’est pas installé</translation>
    </message>
    <message>
        <source>Ollama status unknown</source>
        <translation>État d’Ollama inconnu</translation>
    </message>
    <message>
        <source>Looking for the local Ollama service and model.</source>
        <translation>Recherche du service et du modèle locaux d’Ollama.</translation>
    </message>
    <message>
        <source>The qwen3:1.7b model is available. New transcripts can use local speaker hints and summaries.</source>
        <translation>Le modèle qwen3:1.7b est disponible. Les nouvelles transcriptions peuvent bénéficier de résumés et d’indices locaux sur les intervenants.</translation>
    </message>
    <message>
        <source>Install the qwen3:1.7b model to enable richer local summaries. Transcript snippets still work without it.</source>
        <translation>Installez le modèle qwen3:1.7b pour obtenir des résumés locaux enrichis. Les extraits de transcription fonctionnent aussi sans lui.</translation>
    </message>
    <message>
        <source>Ollama was found on this Mac, but the local service is not responding yet.</source>
        <translation>Ollama se trouve sur cet ordinateur, mais son service local ne répond pas encore.</translation>
    </message>
    <message>
        <source>Transcript snippets work without Ollama. Install Ollama only if you want richer local summaries.</source>
        <translation>Les extraits de transcription fonctionnent sans Ollama. N’installez Ollama que si vous souhaitez des résumés locaux enrichis.</translation>
    </message>
    <message>
        <source>Click refresh to check whether Ollama is available.</source>
        <translation>Cliquez sur le bouton d’actualisation pour vérifier si Ollama est disponible.</translation>
    </message>
    <message>
        <source>The update server returned HTTP %1.</source>
        <translation>Le serveur de mise à jour a répondu HTTP %1.</translation>
    </message>
    <message>
        <source>The update manifest is missing %1.</source>
        <translation>Il manque %1 au manifeste de mise à jour.</translation>
    </message>
    <message>
        <source>The update server returned an invalid response.</source>
        <translation>Le serveur de mise à jour a envoyé une réponse non valable.</translation>
    </message>
    <message>
        <source>the value of &quot;%1&quot; is no address</source>
        <translation>la valeur de «&#xa0;%1&#xa0;» n’est pas une adresse</translation>
    </message>
    <message>
        <source>the value of &quot;%1&quot; is no date</source>
        <translation>la valeur de «&#xa0;%1&#xa0;» n’est pas une date</translation>
    </message>
    <message>
        <source>Current version: %1 (%2)</source>
        <translation>Version actuelle&#xa0;: %1 (%2)</translation>
    </message>
    <message>
        <source>Last checked: %1</source>
        <translation>Dernière vérification&#xa0;: %1</translation>
    </message>
    <message>
        <source>Last checked: Never</source>
        <translation>Dernière vérification&#xa0;: jamais</translation>
    </message>
    <message>
        <source>Version %1 (%2) is available.</source>
        <translation>La version %1 (%2) est disponible.</translation>
    </message>
    <message>
        <source>Version %1 requires macOS %2.</source>
        <translation>Système requis par la version %1&#xa0;: %2.</translation>
    </message>
    <message>
        <source>a newer version</source>
        <translation>une version plus récente</translation>
    </message>
    <message>
        <source>Checking for updates.</source>
        <translation>Recherche de mises à jour.</translation>
    </message>
    <message>
        <source>Corvane is up to date.</source>
        <translation>Corvane est à jour.</translation>
    </message>
    <message>
        <source>Published %1.</source>
        <translation>Publiée le %1.</translation>
    </message>
    <message>
        <source>%1m %2s</source>
        <translation>%1&#xa0;min %2&#xa0;s</translation>
    </message>
    <message>
        <source>prepareFailed</source>
        <translation>échec de la préparation de la requête</translation>
    </message>
    <message>
        <source>executeFailed</source>
        <translation>échec de l’exécution de la requête</translation>
    </message>
    <message>
        <source>openFailed</source>
        <translation>échec de l’ouverture</translation>
    </message>
    <message>
        <source>unknown sqlite error</source>
        <translation>erreur sqlite inconnue</translation>
    </message>
    <message>
        <source>worker exited with status %1: %2</source>
        <translation>le programme de traitement s’est terminé avec le code %1&#xa0;: %2</translation>
    </message>
    <message>
        <source>the speaker&apos;s label holds a NUL character</source>
        <translation>l’étiquette de l’intervenant contient un caractère nul</translation>
    </message>
    <message>
        <source>%1 holds a count that cannot be</source>
        <translation>%1 contient un nombre impossible</translation>
    </message>
    <message>
        <source>%1: It holds no sound</source>
        <translation>%1&#xa0;: ne contient aucun son</translation>
    </message>
    <message>
        <source>It cannot be read as an audio file</source>
        <translation>N’est pas un fichier audio lisible</translation>
    </message>
    <message>
        <source>No such file</source>
        <translation>Aucun fichier de ce nom</translation>
    </message>
    <message>
        <source>It holds no sound that can be played</source>
        <translation>Ne contient aucun son lisible</translation>
    </message>
    <message>
        <source>The sound server delivers no sound from %1.</source>
        <translation>Le serveur de son ne transmet aucun son de %1.</translation>
    </message>
    <message>
        <source>There is no sound server.</source>
        <translation>Il n’y a pas de serveur de son.</translation>
    </message>
    <message>
        <source>The sound server does not answer.</source>
        <translation>Le serveur de son ne répond pas.</translation>
    </message>
    <message>
        <source>There is no microphone.</source>
        <translation>Il n’y a pas de microphone.</translation>
    </message>
    <message>
        <source>There is no sound output.</source>
        <translation>Il n’y a pas de sortie audio.</translation>
    </message>
    <message>
        <source>The sound server takes no sound.</source>
        <translation>Le serveur de son n’accepte aucun son.</translation>
    </message>
    <message>
        <source>Not a regular file</source>
        <translation>N’est pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>The file is empty</source>
        <translation>Le fichier est vide</translation>
    </message>
    <message>
        <source>Not a WAV file, or its beginning is damaged</source>
        <translation>N’est pas un fichier WAV, ou son début est endommagé</translation>
    </message>
    <message>
        <source>A WAV file with samples of a kind that Corvane does not read</source>
        <translation>Fichier WAV dont Corvane ne sait pas lire les échantillons</translation>
    </message>
    <message>
        <source>Cannot change the sample rate from %1 to %2</source>
        <translation>Impossible de convertir la fréquence d’échantillonnage de %1 à %2</translation>
    </message>
    <message>
        <source>Changing the sample rate failed: %1</source>
        <translation>Échec de la conversion de la fréquence d’échantillonnage&#xa0;: %1</translation>
    </message>
    <message>
        <source>No answer came in time.</source>
        <translation>Aucune réponse dans le délai imparti.</translation>
    </message>
    <message>
        <source>Connection closed</source>
        <translation>Connexion fermée</translation>
    </message>
    <message>
        <source>The request timed out.</source>
        <translation>Le délai de la requête est dépassé.</translation>
    </message>
    <message>
        <source>The answer is larger than %1 MB.</source>
        <translation>La réponse dépasse %1&#xa0;Mo.</translation>
    </message>
    <message>
        <source>The server redirects to another address, which is not followed.</source>
        <translation>Le serveur redirige vers une autre adresse, qui n’est pas suivie.</translation>
    </message>
    <message>
        <source>The address or a header cannot be used.</source>
        <translation>L’adresse ou un en-tête est inutilisable.</translation>
    </message>
    <message>
        <source>Host %1 not found</source>
        <translation>Hôte %1 introuvable</translation>
    </message>
    <message>
        <source>A null character in the command line or the environment</source>
        <translation>Caractère nul dans la ligne de commande ou l’environnement</translation>
    </message>
    <message>
        <source>There is no desktop session bus, so the keyring cannot be reached.</source>
        <translation>Il n’y a pas de bus de session&#xa0;: le trousseau de clés est inaccessible.</translation>
    </message>
    <message>
        <source>No keyring service is running. Install or start one, such as GNOME Keyring or KWallet, and try again.</source>
        <translation>Aucun service de trousseau de clés n’est actif. Installez-en ou démarrez-en un, comme GNOME Keyring ou KWallet, puis réessayez.</translation>
    </message>
    <message>
        <source>The keyring is locked. Unlock it and try again.</source>
        <translation>Le trousseau de clés est verrouillé. Déverrouillez-le, puis réessayez.</translation>
    </message>
    <message>
        <source>There is no keyring to save the token in. Create one and try again.</source>
        <translation>Il n’y a pas de trousseau de clés où enregistrer le jeton. Créez-en un, puis réessayez.</translation>
    </message>
    <message>
        <source>The keyring service did not answer in time.</source>
        <translation>Le service de trousseau de clés n’a pas répondu à temps.</translation>
    </message>
    <message>
        <source>The keyring service failed: %1</source>
        <translation>Échec du service de trousseau de clés&#xa0;: %1</translation>
    </message>
    <message>
        <source>%1: cannot be read</source>
        <translation>%1&#xa0;: illisible</translation>
    </message>
</context>
</TS>
