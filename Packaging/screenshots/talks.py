"""What is said in the meetings of the sample library, and by whom. All of it is invented."""

# label, what was said. A turn lasts about as long as it takes to say.
FESTIVAL = [
    ("SPEAKER_00", "Good evening, everyone. Three things for tonight: the route, the lights on the water, and who "
                   "carries what. Should we begin with the route?"),
    ("SPEAKER_01", "Yes, please. I walked it on Sunday with a stopwatch. From the mill to the lower bridge it is "
                   "eleven minutes at a slow pace, and nineteen with children."),
    ("SPEAKER_02", "So we plan for the nineteen. Last year the front was on the bridge while the end was still "
                   "waiting at the mill, and the band had to play the same tune four times."),
    ("SPEAKER_03", "Five times. I counted, and so did the neighbours."),
    ("SPEAKER_00", "Then two groups, ten minutes apart. Ilse, could your choir close the first one?"),
    ("SPEAKER_02", "We could, if somebody lends us a lamp that survives the wind. The paper ones were gone before the "
                   "second verse."),
    ("SPEAKER_01", "I have twenty storm lanterns in the shed. They are heavy, but they burn for six hours, and nobody "
                   "has yet managed to blow one out."),
    ("SPEAKER_03", "About the water: the rowing club gives us four boats and asks for one thing in return, that we "
                   "tell the lock keeper in writing. I will do that tomorrow."),
    ("SPEAKER_00", "Thank you, Ravi. Please copy me in, then the town has it on file as well. What about the "
                   "electricity at the landing stage?"),
    ("SPEAKER_03", "It was repaired in spring. One socket, sixteen amperes. Enough for the coffee or for the lights, "
                   "but not for both at once."),
    ("SPEAKER_02", "Then it is clearly the coffee. The lights can run on batteries; people cannot."),
    ("SPEAKER_01", "I would like to try the long exposure from the upper bank again. If everyone stands still for "
                   "eight seconds when the bell rings, we have our poster for next year."),
    ("SPEAKER_00", "Agreed: the bell at half past nine, and eight seconds of standing still. I will put it on the "
                   "programme, in large print."),
]

MUSEUM = [
    ("SPEAKER_00", "The first stop is the herring boat. We have forty seconds before people walk on, so what do they "
                   "have to know by then?"),
    ("SPEAKER_01", "That she was built by two sisters. Everything else can be read on the sign."),
    ("SPEAKER_00", "Good. And could we hear the wood? The hull creaks when the hall warms up in the morning."),
    ("SPEAKER_02", "I can come at six with a recorder, before the ventilation starts. One hour should be enough for "
                   "the whole hall."),
    ("SPEAKER_01", "Bring a warm coat. And please do not lean on the capstan, it is older than the three of us "
                   "together."),
    ("SPEAKER_00", "Then let us hear the second stop. Who speaks the harbour master?"),
    ("SPEAKER_02", "My uncle. He was one."),
]

READING = [
    ("SPEAKER_00", "Did anybody believe the gardener?"),
    ("SPEAKER_01", "Until the last chapter, yes. Then I read the first one again and was ashamed of myself."),
    ("SPEAKER_00", "That is exactly what the book wants. Look at how often he says that he never lies."),
]

FESTIVAL_NAMES = {"SPEAKER_00": "Marta Lindqvist", "SPEAKER_01": "Tomás Arrieta", "SPEAKER_02": "Ilse Brandauer",
                  "SPEAKER_03": "Ravi Menon"}
FESTIVAL_SUMMARY = (
    "The procession is split into two groups ten minutes apart, with storm lanterns for the choir. Four boats carry the "
    "lights on the water; the socket at the landing stage is kept for the coffee. At half past nine everyone stands "
    "still for eight seconds, for next year's poster.")
FESTIVAL_CONTEXT = [
    {"speaker": "SPEAKER_00", "short_label": "Chairs the meeting",
     "context": "Leads through the agenda, settles the times and keeps the town informed.",
     "notable_lines": ["Then two groups, ten minutes apart."]},
]

# name, notes, meetings, seconds of speech
PEOPLE = [
    ("Ilse Brandauer", "Choir, alto", 9, 4310),
    ("Marta Lindqvist", "Chairs the festival committee", 14, 9120),
    ("Ravi Menon", "Rowing club, the boats", 6, 2275),
    ("Tomás Arrieta", "Photographs, storm lanterns", 8, 3660),
    ("Nadia Haddad", "Harbour museum, collections", 3, 1490),
]
