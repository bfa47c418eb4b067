#pragma once

class TForm;

/// Tells assistive tools what each control of a form is called and what it is for: its own text,
/// else its label's, else its hint; the hint describes it. Left to themselves, they call a control
/// by whatever text happens to precede it. To be called again when a label got another text.
void AnnotateControls(const TForm& form);

/// Takes it back, before the windows go.
void ForgetAnnotations(const TForm& form);
